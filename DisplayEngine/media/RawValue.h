#pragma once

#include <QStringView>

#include <optional>

namespace sorvane {

// The enumeration whose raw string is `raw`, or nothing for any other text.
// Raw strings are stored and exchanged values, so they match exactly: no case
// folding, no trimming. Each enumeration with raw values specialises this in
// its own header, next to its `toRaw`.
template <typename Enum> std::optional<Enum> fromRaw(QStringView raw);

} // namespace sorvane
