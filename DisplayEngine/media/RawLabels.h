#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace sorvane {

// Raw strings of an enumeration whose cases run 0, 1, ... in the order of `all`,
// given as one table: the two directions cannot disagree.
template <typename Enum, size_t N> struct RawLabels {
    const std::array<Enum, N> &all;
    std::array<const char *, N> labels;

    QString toRaw(Enum value) const { return QString::fromLatin1(labels[size_t(value)]); }
    std::optional<Enum> fromRaw(QStringView raw) const
    {
        for (const Enum value : all) {
            if (raw == QLatin1StringView(labels[size_t(value)]))
                return value;
        }
        return std::nullopt;
    }
};

} // namespace sorvane
