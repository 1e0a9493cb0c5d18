#pragma once

#include <QJsonDocument>
#include <QJsonObject>

namespace sorvane::test {

// Records in tests are written as JSON text so that they read like the files
// and responses they stand for.
inline QJsonObject parseObject(const char *json)
{
    return QJsonDocument::fromJson(QByteArray(json)).object();
}

// Through text and back, as a record would travel.
inline QJsonObject throughText(const QJsonObject &object)
{
    return QJsonDocument::fromJson(QJsonDocument(object).toJson()).object();
}

} // namespace sorvane::test
