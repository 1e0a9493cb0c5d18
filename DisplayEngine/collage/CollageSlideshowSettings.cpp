#include "collage/CollageSlideshowSettings.h"

#include "bundle/BundlePlaybackPreferences.h"
#include "slideshow/Preferences.h"

#include <algorithm>
#include <cmath>

namespace sorvane {
namespace {

const QString defaultLayoutKey = QStringLiteral("collage.defaultLayout");
const QString imageChangeIntervalKey = QStringLiteral("collage.imageChangeInterval");
const QString shuffleVariedLayoutKey = QStringLiteral("collage.shuffleVariedLayout");
const QString variedLayoutIntervalKey = QStringLiteral("collage.variedLayoutInterval");
const QString showTileHoverControlsKey = QStringLiteral("collage.showTileHoverControls");
const QString flowWeightModeKey = QStringLiteral("collage.flowWeightMode");
const QString flowOrientationKey = QStringLiteral("collage.flowOrientation");
const QString flowTilesPerChangeKey = QStringLiteral("collage.flowTilesPerChange");
const QString flowStaggerSwapsKey = QStringLiteral("collage.flowStaggerSwaps");
const QString flowColumnAdjustmentKey = QStringLiteral("collage.flowColumnAdjustment");
const QString flowInfiniteScrollKey = QStringLiteral("collage.flowInfiniteScroll");
const QString flowScrollBidirectionalKey = QStringLiteral("collage.flowScrollBidirectional");
const QString flowScrollSpeedKey = QStringLiteral("collage.flowScrollSpeed");
const QString flowScrollPointerPauseKey = QStringLiteral("collage.flowScrollPointerPause");
const QString flowAutoCycleTilesKey = QStringLiteral("collage.flowAutoCycleTiles");

} // namespace

qint64 CollageSlideshowSettings::clampFlowTilesPerChange(qint64 tiles)
{
    return std::max(tiles, minFlowTilesPerChange);
}

qint64 CollageSlideshowSettings::clampFlowColumnAdjustment(qint64 adjustment)
{
    return std::clamp(adjustment, minFlowColumnAdjustment, maxFlowColumnAdjustment);
}

double CollageSlideshowSettings::clampFlowScrollSpeed(double speed)
{
    if (std::isnan(speed))
        return CollageSlideshowSettings {}.flowScrollSpeed;
    return std::clamp(speed, minFlowScrollSpeed, maxFlowScrollSpeed);
}

double CollageSlideshowSettings::clampFlowScrollPointerPause(double seconds)
{
    if (std::isnan(seconds))
        return CollageSlideshowSettings {}.flowScrollPointerPause;
    return std::clamp(seconds, 0.0, maxFlowScrollPointerPause);
}

CollageSlideshowSettings CollageSlideshowSettings::load(const Preferences &preferences)
{
    CollageSlideshowSettings s;
    const Preferences &p = preferences;
    if (const auto text = p.stringValue(defaultLayoutKey))
        s.defaultLayout = fromRaw<CollageLayout>(*text).value_or(CollageLayout::flow);
    s.imageChangeInterval = p.numberValue(imageChangeIntervalKey).value_or(s.imageChangeInterval);
    s.shuffleVariedLayout = p.boolValue(shuffleVariedLayoutKey).value_or(s.shuffleVariedLayout);
    s.variedLayoutInterval = p.numberValue(variedLayoutIntervalKey).value_or(s.variedLayoutInterval);
    s.showTileHoverControls = p.boolValue(showTileHoverControlsKey).value_or(s.showTileHoverControls);
    if (const auto text = p.stringValue(flowWeightModeKey))
        s.flowWeightMode
            = *text == toRaw(FlowWeightMode::weighted) ? FlowWeightMode::weighted : FlowWeightMode::proportional;
    if (const auto text = p.stringValue(flowOrientationKey))
        s.flowOrientation
            = *text == toRaw(FlowOrientation::horizontal) ? FlowOrientation::horizontal : FlowOrientation::vertical;
    if (const auto tiles = p.wholeNumberValue(flowTilesPerChangeKey))
        s.flowTilesPerChange = clampFlowTilesPerChange(*tiles);
    s.flowStaggerSwaps = p.boolValue(flowStaggerSwapsKey).value_or(s.flowStaggerSwaps);
    if (const auto adjustment = p.wholeNumberValue(flowColumnAdjustmentKey))
        s.flowColumnAdjustment = clampFlowColumnAdjustment(*adjustment);
    s.flowInfiniteScroll = p.boolValue(flowInfiniteScrollKey).value_or(s.flowInfiniteScroll);
    s.flowScrollBidirectional = p.boolValue(flowScrollBidirectionalKey).value_or(s.flowScrollBidirectional);
    if (const auto speed = p.numberValue(flowScrollSpeedKey))
        s.flowScrollSpeed = clampFlowScrollSpeed(*speed);
    if (const auto pause = p.numberValue(flowScrollPointerPauseKey))
        s.flowScrollPointerPause = clampFlowScrollPointerPause(*pause);
    s.flowAutoCycleTiles = p.boolValue(flowAutoCycleTilesKey).value_or(s.flowAutoCycleTiles);
    return s;
}

std::optional<QString> CollageSlideshowSettings::save(Preferences &preferences) const
{
    return preferences.setValues({
        {defaultLayoutKey, toRaw(defaultLayout)},
        {imageChangeIntervalKey, imageChangeInterval},
        {shuffleVariedLayoutKey, shuffleVariedLayout},
        {variedLayoutIntervalKey, variedLayoutInterval},
        {showTileHoverControlsKey, showTileHoverControls},
        {flowWeightModeKey, toRaw(flowWeightMode)},
        {flowOrientationKey, toRaw(flowOrientation)},
        {flowTilesPerChangeKey, flowTilesPerChange},
        {flowStaggerSwapsKey, flowStaggerSwaps},
        {flowColumnAdjustmentKey, flowColumnAdjustment},
        {flowInfiniteScrollKey, flowInfiniteScroll},
        {flowScrollBidirectionalKey, flowScrollBidirectional},
        {flowScrollSpeedKey, flowScrollSpeed},
        {flowScrollPointerPauseKey, flowScrollPointerPause},
        {flowAutoCycleTilesKey, flowAutoCycleTiles},
    });
}

CollageSlideshowSettings CollageSlideshowSettings::forBundle(
    const BundlePlaybackPreferences &playback, const CollageSlideshowSettings &base)
{
    CollageSlideshowSettings s = base;
    const BundleFlowPreferences &flow = playback.flow;
    s.defaultLayout = playback.collageLayout;
    s.flowOrientation = flow.orientation;
    s.flowWeightMode = flow.weightMode;
    if (flow.tilesPerChange)
        s.flowTilesPerChange = clampFlowTilesPerChange(*flow.tilesPerChange);
    if (flow.columnAdjustment)
        s.flowColumnAdjustment = clampFlowColumnAdjustment(*flow.columnAdjustment);
    if (flow.scrollSpeed)
        s.flowScrollSpeed = clampFlowScrollSpeed(*flow.scrollSpeed);
    s.flowStaggerSwaps = flow.staggerSwaps.value_or(s.flowStaggerSwaps);
    s.flowInfiniteScroll = flow.infiniteScroll.value_or(s.flowInfiniteScroll);
    s.flowScrollBidirectional = flow.bidirectionalScroll.value_or(s.flowScrollBidirectional);
    s.flowAutoCycleTiles = flow.autoCycleTiles.value_or(s.flowAutoCycleTiles);
    return s;
}

} // namespace sorvane
