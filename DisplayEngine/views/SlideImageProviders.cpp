#include "views/SlideImageProviders.h"

#include "views/BrandLogoCache.h"
#include "views/CollageImageProvider.h"
#include "views/SlideImageProvider.h"

#include <QQmlEngine>

namespace sorvane {

BrandLogoCache &SlideImageProviders::registerAll(QQmlEngine &engine)
{
    engine.addImageProvider(SlideImageProvider::kProviderName, new SlideImageProvider);
    engine.addImageProvider(
        CollageImageProvider::kProviderName, new CollageImageProvider(CollageImageProvider::makeWallCache()));
    auto *logos = new BrandLogoCache;
    engine.addImageProvider(BrandLogoCache::kProviderName, logos);
    return *logos;
}

} // namespace sorvane
