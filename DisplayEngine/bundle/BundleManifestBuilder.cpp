#include "bundle/BundleManifestBuilder.h"

#include "bundle/BundleSort.h"
#include "bundle/BundleWireValues.h"

namespace sorvane {

BundlePlaybackJSON BundleManifestBuilder::playback(const BundlePlaybackPreferences &p)
{
    BundlePlaybackJSON json;
    json.mode = toWire(p.mode);
    json.collageLayout = toWire(p.collageLayout);
    json.intervalSeconds = p.intervalSeconds;
    json.autoAdvance = p.autoAdvance;
    json.loop = p.loop;
    json.reshuffleOnLoop = p.reshuffleOnLoop;
    json.sort = toWire(p.sort);
    json.shuffleSeed = p.shuffleSeed;
    json.crossfade = p.crossfade;
    json.transitionSeconds = p.transitionSeconds;
    json.imageScaling = toWire(p.imageScaling);
    json.background = toWire(p.background);
    json.imageFilter = toWire(p.imageFilter);
    json.showImageInfo = p.showImageInfo;
    json.fileDisplayFormat = toWire(p.fileDisplayFormat);
    json.showProgress = p.showProgress;
    BundleFlowJSON flow;
    flow.orientation = toWire(p.flow.orientation);
    flow.columnAdjustment = p.flow.columnAdjustment;
    flow.infiniteScroll = p.flow.infiniteScroll;
    flow.bidirectionalScroll = p.flow.bidirectionalScroll;
    flow.scrollSpeed = p.flow.scrollSpeed;
    flow.autoCycleTiles = p.flow.autoCycleTiles;
    flow.tilesPerChange = p.flow.tilesPerChange;
    flow.staggerSwaps = p.flow.staggerSwaps;
    flow.weightMode = toWire(p.flow.weightMode);
    json.flow = flow;
    return json;
}

BundleDisplayJSON BundleManifestBuilder::display(const BundleDisplayPreferences &d)
{
    BundleDisplayJSON json;
    json.preferredScreenCount = d.preferredScreenCount;
    json.preferredControlScope = toWire(d.preferredControlScope);
    json.preferredSyncMode = toWire(d.preferredSyncMode);
    json.preferredPhaseDelaySeconds = d.preferredPhaseDelaySeconds;
    json.preferDuplicateAvoidance = d.preferDuplicateAvoidance;
    if (!d.preferredPerScreen.empty()) {
        std::vector<BundlePerScreenJSON> screens;
        for (const BundlePerScreenPreference &screen : d.preferredPerScreen)
            screens.push_back(
                {screen.screenOrdinal, toWire(screen.preferredMode), toWire(screen.preferredCollageLayout)});
        json.preferredPerScreen = std::move(screens);
    }
    return json;
}

} // namespace sorvane
