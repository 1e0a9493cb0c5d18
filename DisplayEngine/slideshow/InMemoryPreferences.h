#pragma once

#include "slideshow/Preferences.h"

#include <QMap>
#include <QStringList>

namespace sorvane {

// Preferences that live only as long as this object: for settings that must
// not reach the user's own (a bundle's suggestions) and for tests.
class InMemoryPreferences final : public Preferences {
public:
    std::optional<PreferenceValue> value(const QString &key) const override;
    std::optional<QString> setValues(const QList<Entry> &entries) override;
    std::optional<QString> remove(const QString &key) override;

    QStringList keys() const { return m_values.keys(); }

private:
    QMap<QString, PreferenceValue> m_values;
};

} // namespace sorvane
