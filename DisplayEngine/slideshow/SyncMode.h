#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// How linked slideshows time their advances: all at once, or one after another.
// The raw value is stored: never reword it.
enum class SyncMode { synchronized, phased };

inline constexpr std::array<SyncMode, 2> allSyncModes {SyncMode::synchronized, SyncMode::phased};

// "Synchronized", "Phased".
QString toRaw(SyncMode mode);
template <> std::optional<SyncMode> fromRaw<SyncMode>(QStringView raw);

} // namespace sorvane
