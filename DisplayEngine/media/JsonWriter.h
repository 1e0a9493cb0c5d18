#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QLatin1StringView>
#include <QString>
#include <QStringList>

#include <optional>

namespace sorvane {

// Keyed writes for the media records, the counterpart of JsonReader: absent
// optionals are left out rather than written as null, and dates are written
// as ISO 8601 UTC with milliseconds.
class JsonWriter {
public:
    void set(QLatin1StringView key, const QString &value);
    void set(QLatin1StringView key, double value);
    void set(QLatin1StringView key, int value);
    void set(QLatin1StringView key, qint64 value);
    void set(QLatin1StringView key, const QDateTime &value);
    void set(QLatin1StringView key, const QStringList &value);
    void set(QLatin1StringView key, const QJsonObject &value);

    template <typename T> void setIfPresent(QLatin1StringView key, const std::optional<T> &value)
    {
        if (value)
            set(key, *value);
    }

    const QJsonObject &object() const { return m_object; }

private:
    QJsonObject m_object;
};

} // namespace sorvane
