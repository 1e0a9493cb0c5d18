#pragma once

class QQmlEngine;

namespace sorvane {

class BrandLogoCache;

// The image providers every slide window draws with: "image://slide/" (stills decoded with
// our limits), "image://collage/" (wall thumbnails from one cache shared by every wall on
// every screen, so a photo shown twice is decoded once) and "image://brand/" (logos).
class SlideImageProviders {
public:
    // Registers all three on the engine, which owns them from then on. The logo cache is
    // returned because the overlay's logo must pass its checks there before it is shown.
    static BrandLogoCache &registerAll(QQmlEngine &engine);
};

} // namespace sorvane
