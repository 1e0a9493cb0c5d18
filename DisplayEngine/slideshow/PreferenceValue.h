#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QtGlobal>

#include <variant>

namespace sorvane {

// One stored preference. The alternative held is the value's type, and it is
// kept as such: readers distinguish a Boolean from a number and 4 from 4.0.
// Build integers as qint64 so that an int literal does not pick another type.
using PreferenceValue = std::variant<bool, qint64, double, QString, QJsonObject, QJsonArray>;

} // namespace sorvane
