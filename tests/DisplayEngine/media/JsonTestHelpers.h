#pragma once

#include <QJsonDocument>
#include <QJsonObject>

#include <ostream>

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

// A record that must not decode, and the key its error must name.
struct DecodeFailure {
    friend void PrintTo(const DecodeFailure &c, std::ostream *os) { *os << '"' << c.json << '"'; }

    const char *json;
    const char *keyInError;
};

} // namespace sorvane::test
