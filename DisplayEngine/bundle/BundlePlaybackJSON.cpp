#include "bundle/BundlePlaybackJSON.h"

#include "bundle/ManifestFields.h"

namespace sorvane {

using L = QLatin1StringView;

BundleFlowJSON BundleFlowJSON::fromJson(const QJsonObject &o)
{
    using namespace ManifestFields;
    BundleFlowJSON f;
    f.orientation = string(o.value(L("orientation")));
    f.columnAdjustment = integer(o.value(L("column_adjustment")));
    f.infiniteScroll = boolean(o.value(L("infinite_scroll")));
    f.bidirectionalScroll = boolean(o.value(L("bidirectional_scroll")));
    f.scrollSpeed = number(o.value(L("scroll_speed")));
    f.autoCycleTiles = boolean(o.value(L("auto_cycle_tiles")));
    f.tilesPerChange = integer(o.value(L("tiles_per_change")));
    f.staggerSwaps = boolean(o.value(L("stagger_swaps")));
    f.weightMode = string(o.value(L("weight_mode")));
    return f;
}

BundleJSON BundleFlowJSON::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("orientation"), orientation);
    j.insert(QStringLiteral("column_adjustment"), columnAdjustment);
    j.insert(QStringLiteral("infinite_scroll"), infiniteScroll);
    j.insert(QStringLiteral("bidirectional_scroll"), bidirectionalScroll);
    j.insert(QStringLiteral("scroll_speed"), scrollSpeed);
    j.insert(QStringLiteral("auto_cycle_tiles"), autoCycleTiles);
    j.insert(QStringLiteral("tiles_per_change"), tilesPerChange);
    j.insert(QStringLiteral("stagger_swaps"), staggerSwaps);
    j.insert(QStringLiteral("weight_mode"), weightMode);
    return j;
}

BundlePlaybackJSON BundlePlaybackJSON::fromJson(const QJsonObject &o)
{
    using namespace ManifestFields;
    BundlePlaybackJSON p;
    p.mode = string(o.value(L("mode")));
    p.collageLayout = string(o.value(L("collage_layout")));
    p.intervalSeconds = number(o.value(L("interval_seconds")));
    p.autoAdvance = boolean(o.value(L("auto_advance")));
    p.loop = boolean(o.value(L("loop")));
    p.reshuffleOnLoop = boolean(o.value(L("reshuffle_on_loop")));
    p.sort = string(o.value(L("sort")));
    p.shuffleSeed = integer(o.value(L("shuffle_seed")));
    p.crossfade = boolean(o.value(L("crossfade")));
    p.transitionSeconds = number(o.value(L("transition_seconds")));
    p.imageScaling = string(o.value(L("image_scaling")));
    p.background = string(o.value(L("background")));
    p.imageFilter = string(o.value(L("image_filter")));
    p.showImageInfo = boolean(o.value(L("show_image_info")));
    p.fileDisplayFormat = string(o.value(L("file_display_format")));
    p.showProgress = boolean(o.value(L("show_progress")));
    if (const auto flow = object(o.value(L("flow"))))
        p.flow = BundleFlowJSON::fromJson(*flow);
    p.unknownMemberCount = countUnknown(o,
        {L("mode"), L("collage_layout"), L("interval_seconds"), L("auto_advance"), L("loop"), L("reshuffle_on_loop"),
            L("sort"), L("shuffle_seed"), L("crossfade"), L("transition_seconds"), L("image_scaling"), L("background"),
            L("image_filter"), L("show_image_info"), L("file_display_format"), L("show_progress"), L("flow")});
    return p;
}

BundleJSON BundlePlaybackJSON::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("mode"), mode);
    j.insert(QStringLiteral("collage_layout"), collageLayout);
    j.insert(QStringLiteral("interval_seconds"), intervalSeconds);
    j.insert(QStringLiteral("auto_advance"), autoAdvance);
    j.insert(QStringLiteral("loop"), loop);
    j.insert(QStringLiteral("reshuffle_on_loop"), reshuffleOnLoop);
    j.insert(QStringLiteral("sort"), sort);
    j.insert(QStringLiteral("shuffle_seed"), shuffleSeed);
    j.insert(QStringLiteral("crossfade"), crossfade);
    j.insert(QStringLiteral("transition_seconds"), transitionSeconds);
    j.insert(QStringLiteral("image_scaling"), imageScaling);
    j.insert(QStringLiteral("background"), background);
    j.insert(QStringLiteral("image_filter"), imageFilter);
    j.insert(QStringLiteral("show_image_info"), showImageInfo);
    j.insert(QStringLiteral("file_display_format"), fileDisplayFormat);
    j.insert(QStringLiteral("show_progress"), showProgress);
    if (flow)
        j.insert(QStringLiteral("flow"), flow->toJson());
    return j;
}

} // namespace sorvane
