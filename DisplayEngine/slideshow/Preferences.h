#pragma once

#include "slideshow/PreferenceValue.h"

#include <QList>
#include <QString>

#include <optional>
#include <utility>

namespace sorvane {

// Per-user preferences of one application: keys to typed values. The typed
// getters give nothing both for a missing key and for a value of another
// type, so callers decide themselves what a mistyped value means.
class Preferences {
public:
    using Entry = std::pair<QString, PreferenceValue>;

    virtual ~Preferences() = default;

    virtual std::optional<PreferenceValue> value(const QString &key) const = 0;
    // Keeps all entries or none of them. Nothing on success, otherwise why
    // they could not be kept.
    virtual std::optional<QString> setValues(const QList<Entry> &entries) = 0;
    // Removing a key that is not there succeeds.
    virtual std::optional<QString> remove(const QString &key) = 0;

    std::optional<QString> setValue(const QString &key, const PreferenceValue &value);
    bool contains(const QString &key) const { return value(key).has_value(); }

    std::optional<bool> boolValue(const QString &key) const;
    std::optional<qint64> integerValue(const QString &key) const;
    std::optional<double> doubleValue(const QString &key) const;
    std::optional<QString> stringValue(const QString &key) const;
    std::optional<QJsonObject> objectValue(const QString &key) const;
    std::optional<QJsonArray> arrayValue(const QString &key) const;

    // Lenient readers for settings that are numbers whatever type stored them: an
    // integer, a double, or text that reads as a number in full (as QSettings keeps
    // numbers in text files). Nothing for a missing key or a value that is no number.
    std::optional<double> numberValue(const QString &key) const;
    // The same, truncated toward zero and held within qint64; nothing for NaN.
    std::optional<qint64> wholeNumberValue(const QString &key) const;

private:
    template <typename T> std::optional<T> typed(const QString &key) const
    {
        const std::optional<PreferenceValue> stored = value(key);
        if (!stored)
            return std::nullopt;
        if (const T *held = std::get_if<T>(&*stored))
            return *held;
        return std::nullopt;
    }
};

} // namespace sorvane
