#include "bundle/BundleManifestMapper.h"

#include "bundle/BundleSort.h"
#include "bundle/BundleWireValues.h"

namespace sorvane {

namespace {

// The one rule for every enumerated key: absent or blank gives the default
// silently; anything else must match a wire value exactly, untrimmed.
template <typename E, typename Parse>
E mapValue(const std::optional<QString> &value, const QString &fieldPath, E fallback, const QString &fallbackWire,
    Parse parse, std::vector<BundleReport> &reports)
{
    if (!value || value->trimmed().isEmpty())
        return fallback;
    if (const std::optional<E> parsed = parse(*value))
        return *parsed;
    BundleReport report;
    report.code = BundleReportCode::unknownEnumValueDefaulted;
    report.fieldPath = fieldPath;
    report.unrecognizedValue = *value;
    report.defaultUsed = fallbackWire;
    report.message = QStringLiteral("%1 held unrecognized value '%2'; used '%3'.").arg(fieldPath, *value, fallbackWire);
    reports.push_back(std::move(report));
    return fallback;
}

template <typename E>
E mapWire(const std::optional<QString> &value, const char *fieldPath, std::vector<BundleReport> &reports)
{
    const E fallback = BundleWireTable<E>::entries.front().first;
    return mapValue<E>(value, QString::fromLatin1(fieldPath), fallback, toWire(fallback), fromWire<E>, reports);
}

} // namespace

BundlePlaybackPreferences BundleManifestMapper::playback(
    const BundleManifest &manifest, std::vector<BundleReport> &reports)
{
    BundlePlaybackPreferences p;
    const BundlePlaybackJSON json = manifest.playback.value_or(BundlePlaybackJSON {});
    p.mode = mapWire<DisplayMode>(json.mode, "playback.mode", reports);
    p.collageLayout = mapWire<CollageLayout>(json.collageLayout, "playback.collage_layout", reports);
    p.sort = mapValue<BundleSort>(json.sort, QStringLiteral("playback.sort"), BundleSort::random,
        toWire(BundleSort::random), bundleSortFromWire, reports);
    p.imageScaling = mapWire<ImageScalingMode>(json.imageScaling, "playback.image_scaling", reports);
    p.background = mapWire<BundleBackground>(json.background, "playback.background", reports);
    p.imageFilter = mapWire<ImageFilter>(json.imageFilter, "playback.image_filter", reports);
    p.fileDisplayFormat
        = mapWire<BundleFileDisplayFormat>(json.fileDisplayFormat, "playback.file_display_format", reports);
    const BundleFlowJSON flow = json.flow.value_or(BundleFlowJSON {});
    p.flow.orientation = mapWire<FlowOrientation>(flow.orientation, "playback.flow.orientation", reports);
    p.flow.weightMode = mapWire<FlowWeightMode>(flow.weightMode, "playback.flow.weight_mode", reports);

    p.intervalSeconds = json.intervalSeconds;
    p.autoAdvance = json.autoAdvance;
    p.loop = json.loop;
    p.reshuffleOnLoop = json.reshuffleOnLoop;
    p.shuffleSeed = json.shuffleSeed;
    p.crossfade = json.crossfade;
    p.transitionSeconds = json.transitionSeconds;
    p.showImageInfo = json.showImageInfo;
    p.showProgress = json.showProgress;
    p.flow.columnAdjustment = flow.columnAdjustment;
    p.flow.infiniteScroll = flow.infiniteScroll;
    p.flow.bidirectionalScroll = flow.bidirectionalScroll;
    p.flow.scrollSpeed = flow.scrollSpeed;
    p.flow.autoCycleTiles = flow.autoCycleTiles;
    p.flow.tilesPerChange = flow.tilesPerChange;
    p.flow.staggerSwaps = flow.staggerSwaps;
    return p;
}

BundleDisplayPreferences BundleManifestMapper::display(
    const BundleManifest &manifest, std::vector<BundleReport> &reports)
{
    BundleDisplayPreferences d;
    const BundleDisplayJSON json = manifest.display.value_or(BundleDisplayJSON {});
    d.preferredControlScope
        = mapWire<ControlScope>(json.preferredControlScope, "display.preferred_control_scope", reports);
    d.preferredSyncMode = mapWire<SyncMode>(json.preferredSyncMode, "display.preferred_sync_mode", reports);
    d.preferredScreenCount = json.preferredScreenCount;
    d.preferredPhaseDelaySeconds = json.preferredPhaseDelaySeconds;
    d.preferDuplicateAvoidance = json.preferDuplicateAvoidance;
    for (const BundlePerScreenJSON &entry : json.preferredPerScreen.value_or(std::vector<BundlePerScreenJSON> {})) {
        BundlePerScreenPreference screen;
        screen.screenOrdinal = entry.screenOrdinal;
        // Reported with a literal "[]": the entry's index is deliberately not part of the path.
        screen.preferredMode
            = mapWire<DisplayMode>(entry.preferredMode, "display.preferred_per_screen[].preferred_mode", reports);
        screen.preferredCollageLayout = mapWire<CollageLayout>(
            entry.preferredCollageLayout, "display.preferred_per_screen[].preferred_collage_layout", reports);
        d.preferredPerScreen.push_back(screen);
    }
    return d;
}

OverlayCorner BundleManifestMapper::overlayCorner(const BundleManifest &manifest, std::vector<BundleReport> &reports)
{
    std::optional<QString> corner;
    if (manifest.branding && manifest.branding->overlay)
        corner = manifest.branding->overlay->corner;
    return mapWire<OverlayCorner>(corner, "branding.overlay.corner", reports);
}

} // namespace sorvane
