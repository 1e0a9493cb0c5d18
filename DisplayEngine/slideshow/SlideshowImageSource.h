#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// Which images a slideshow takes. The raw value is the label and is stored.
enum class SlideshowImageSource { selectedSubset, entireFolder };

inline constexpr std::array<SlideshowImageSource, 2> allSlideshowImageSources {
    SlideshowImageSource::selectedSubset, SlideshowImageSource::entireFolder};

// "Selected Images Only", "Entire Folder".
QString toRaw(SlideshowImageSource source);
template <> std::optional<SlideshowImageSource> fromRaw<SlideshowImageSource>(QStringView raw);

} // namespace sorvane
