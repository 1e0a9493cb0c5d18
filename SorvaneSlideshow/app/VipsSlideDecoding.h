#pragma once

namespace sorvane {

// Lets the slide views show HEIC, AVIF and JPEG XL photos, which Qt has no reader for here,
// through libvips.
class VipsSlideDecoding {
public:
    // Before the first window opens.
    static void install();
};

} // namespace sorvane
