#include "bundle/BundlePlaybackJSON.h"

#include "bundle/ManifestFields.h"

namespace sorvane {

using L = QLatin1StringView;

BundleFlowJSON BundleFlowJSON::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    using namespace ManifestFields;
    BundleFlowJSON f;
    f.orientation = string(r.take(L("orientation")));
    f.columnAdjustment = integer(r.take(L("column_adjustment")));
    f.infiniteScroll = boolean(r.take(L("infinite_scroll")));
    f.bidirectionalScroll = boolean(r.take(L("bidirectional_scroll")));
    f.scrollSpeed = number(r.take(L("scroll_speed")));
    f.autoCycleTiles = boolean(r.take(L("auto_cycle_tiles")));
    f.tilesPerChange = integer(r.take(L("tiles_per_change")));
    f.staggerSwaps = boolean(r.take(L("stagger_swaps")));
    f.weightMode = string(r.take(L("weight_mode")));
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
    ManifestFields::MemberReader r(o);
    using namespace ManifestFields;
    BundlePlaybackJSON p;
    p.mode = string(r.take(L("mode")));
    p.collageLayout = string(r.take(L("collage_layout")));
    p.intervalSeconds = number(r.take(L("interval_seconds")));
    p.autoAdvance = boolean(r.take(L("auto_advance")));
    p.loop = boolean(r.take(L("loop")));
    p.reshuffleOnLoop = boolean(r.take(L("reshuffle_on_loop")));
    p.sort = string(r.take(L("sort")));
    p.shuffleSeed = integer(r.take(L("shuffle_seed")));
    p.crossfade = boolean(r.take(L("crossfade")));
    p.transitionSeconds = number(r.take(L("transition_seconds")));
    p.imageScaling = string(r.take(L("image_scaling")));
    p.background = string(r.take(L("background")));
    p.imageFilter = string(r.take(L("image_filter")));
    p.showImageInfo = boolean(r.take(L("show_image_info")));
    p.fileDisplayFormat = string(r.take(L("file_display_format")));
    p.showProgress = boolean(r.take(L("show_progress")));
    if (const auto flow = object(r.take(L("flow"))))
        p.flow = BundleFlowJSON::fromJson(*flow);
    p.unknownMemberCount = r.unknownCount();
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
