#pragma once

#include <QHash>
#include <QSet>
#include <QString>

namespace sorvane {

// Numbers displays for the manager: a display keeps its number while it is connected, and
// a display that comes back under the same name gets its old number again (so its windows
// can go home). Two connected displays never share a number, even when they share a name.
class SlideshowScreenNumbers {
public:
    // The number of a display called `name` that connects now; `connected` are the numbers
    // of the displays still connected.
    quint32 numberFor(const QString &name, const QSet<quint32> &connected);

private:
    QHash<QString, quint32> m_byName;
    quint32 m_next = 1;
};

} // namespace sorvane
