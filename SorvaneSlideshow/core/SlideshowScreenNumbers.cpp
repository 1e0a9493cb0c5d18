#include "core/SlideshowScreenNumbers.h"

namespace sorvane {

quint32 SlideshowScreenNumbers::numberFor(const QString &name, const QSet<quint32> &connected)
{
    const auto known = m_byName.constFind(name);
    if (!name.isEmpty() && known != m_byName.cend() && !connected.contains(*known))
        return *known;
    const quint32 number = m_next++;
    // The first display of a name keeps it; a second one of that name is numbered alone.
    if (!name.isEmpty() && known == m_byName.cend())
        m_byName.insert(name, number);
    return number;
}

} // namespace sorvane
