#pragma once

#include <QString>

#include <array>
#include <optional>

namespace sorvane {

// `playback.sort` of a manifest.
enum class BundleSort { random, sequential, created, modified };

inline constexpr std::array<BundleSort, 4> allBundleSorts = {
    BundleSort::random,
    BundleSort::sequential,
    BundleSort::created,
    BundleSort::modified,
};

inline QString toWire(BundleSort sort)
{
    switch (sort) {
    case BundleSort::random:
        return QStringLiteral("random");
    case BundleSort::sequential:
        return QStringLiteral("sequential");
    case BundleSort::created:
        return QStringLiteral("created");
    case BundleSort::modified:
        return QStringLiteral("modified");
    }
    Q_UNREACHABLE();
    return {};
}

// Exact, case-sensitive match; anything else is for the caller to default and report.
inline std::optional<BundleSort> bundleSortFromWire(const QString &text)
{
    for (const BundleSort sort : allBundleSorts) {
        if (toWire(sort) == text)
            return sort;
    }
    return std::nullopt;
}

} // namespace sorvane
