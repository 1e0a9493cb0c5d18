#include "slideshow/InMemoryPreferences.h"

namespace sorvane {

std::optional<PreferenceValue> InMemoryPreferences::value(const QString &key) const
{
    const auto found = m_values.constFind(key);
    if (found == m_values.constEnd())
        return std::nullopt;
    return *found;
}

std::optional<QString> InMemoryPreferences::setValues(const QList<Entry> &entries)
{
    for (const auto &[key, value] : entries)
        m_values.insert(key, value);
    return std::nullopt;
}

std::optional<QString> InMemoryPreferences::remove(const QString &key)
{
    m_values.remove(key);
    return std::nullopt;
}

} // namespace sorvane
