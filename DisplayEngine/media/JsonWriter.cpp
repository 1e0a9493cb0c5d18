#include "media/JsonWriter.h"

#include <QJsonArray>

namespace sorvane {

void JsonWriter::set(QLatin1StringView key, const QString &value)
{
    m_object.insert(key, value);
}

void JsonWriter::set(QLatin1StringView key, double value)
{
    m_object.insert(key, value);
}

void JsonWriter::set(QLatin1StringView key, int value)
{
    m_object.insert(key, value);
}

void JsonWriter::set(QLatin1StringView key, qint64 value)
{
    m_object.insert(key, value);
}

void JsonWriter::set(QLatin1StringView key, const QDateTime &value)
{
    m_object.insert(key, value.toUTC().toString(Qt::ISODateWithMs));
}

void JsonWriter::set(QLatin1StringView key, const QStringList &value)
{
    m_object.insert(key, QJsonArray::fromStringList(value));
}

void JsonWriter::set(QLatin1StringView key, const QJsonObject &value)
{
    m_object.insert(key, value);
}

} // namespace sorvane
