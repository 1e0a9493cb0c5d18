#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// The order a slideshow plays its items in. The raw value is the label and is stored.
enum class SortMode { random, sequential, creationDate, modifiedDate };

inline constexpr std::array<SortMode, 4> allSortModes {
    SortMode::random, SortMode::sequential, SortMode::creationDate, SortMode::modifiedDate};

// "Random Order", "Sequential (by File Path)", "By Creation Date", "By Modified Date".
QString toRaw(SortMode mode);
template <> std::optional<SortMode> fromRaw<SortMode>(QStringView raw);

} // namespace sorvane
