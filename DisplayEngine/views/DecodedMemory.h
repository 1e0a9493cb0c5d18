#pragma once

namespace sorvane {

// How the process hands back the memory of decoded pictures.
class DecodedMemory {
public:
    // From now on, large buffers (decoded slides and thumbnails, hundreds of kilobytes to
    // megabytes each, freed moments later, often on another thread) get their own mappings, so
    // their memory goes back to the system at once instead of piling up in malloc's pools over
    // days of play. Call it once start-up is over: start-up makes many such allocations it soon
    // frees, and they are cheaper from the pools. Does nothing where the C library has no such knob.
    static void returnLargeBuffersAtOnce();
};

} // namespace sorvane
