#include "bundle/BundleReader.h"

#include "bundle/BundleFormat.h"
#include "bundle/BundleManifestMapper.h"
#include "bundle/BundlePaths.h"
#include "bundle/BundleRootGuard.h"
#include "bundle/BundleTimestamp.h"
#include "bundle/ManifestTextReader.h"
#include "bundle/Sha256.h"
#include "media/BrandOverlay.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonParseError>
#include <QThread>
#include <QtNumeric>

#include <algorithm>
#include <atomic>
#include <limits>
#include <numeric>
#include <thread>

namespace sorvane {

namespace {

using Status = BundleRootGuard::Status;

// The outcome of checking one asset of one item.
struct AssetCheck {
    qsizetype itemIndex = 0;
    QString tier;
    const BundleAsset *asset = nullptr;
    bool isOriginal = false;
    bool needsProbe = false;
    BundleRootGuard::Resolution resolution;
    std::optional<BundleReportCode> failure;
    QString detail;
};

BundleError makeError(BundleErrorCode code, const QString &message)
{
    BundleError error;
    error.code = code;
    error.message = message;
    return error;
}

BundleOpenResult failed(
    BundleError error, std::shared_ptr<BundleIntegrity> integrity, std::vector<BundleReport> reports)
{
    BundleOpenResult result;
    result.error = std::move(error);
    result.integrity = std::move(integrity);
    result.standaloneReports = std::move(reports);
    return result;
}

// Byte totals add sizes declared by a manifest from anywhere: absurd values
// pin the total at the limit instead of overflowing it.
void addBytes(qint64 &total, qint64 bytes)
{
    if (qAddOverflow(total, bytes, &total))
        total = bytes > 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
}

QString bytesText(const std::optional<qint64> &bytes)
{
    return bytes ? QString::number(*bytes) : QStringLiteral("<absent>");
}

// Cheap checks: path safety, containment, existence and size.
void checkPresence(AssetCheck &check, BundleRootGuard &guard)
{
    const QString path = check.asset->path.value_or(QString());
    if (!isSafeBundleRelativePath(path)) {
        check.resolution.status = Status::escapes;
    } else {
        check.resolution = guard.resolve(path);
    }
    if (check.resolution.status == Status::escapes) {
        check.failure = BundleReportCode::itemAssetMissing;
        check.detail = QStringLiteral("'%1' escapes the bundle root.").arg(path);
    } else if (check.resolution.status == Status::absent) {
        check.failure = BundleReportCode::itemAssetMissing;
        check.detail = check.isOriginal ? QStringLiteral("original is absent") : QStringLiteral("asset file is absent");
    } else if (!check.asset->bytes || *check.asset->bytes != check.resolution.size) {
        check.failure = BundleReportCode::itemAssetSizeMismatch;
        check.detail = QStringLiteral("expected %1 bytes, found %2")
                           .arg(bytesText(check.asset->bytes))
                           .arg(check.resolution.size);
    }
}

// Expensive checks: content hash, then decoding.
void checkContent(AssetCheck &check, const BundleOpenOptions &options)
{
    if (check.failure || check.isOriginal || options.verification == BundleVerification::sizeAndCount)
        return;
    if (options.verification == BundleVerification::full) {
        // No digest to compare, or more bytes than any real asset: fail without reading
        // (a sparse terabyte would keep the check busy for many minutes).
        const bool hashable = check.asset->sha256 && check.resolution.size <= BundleFormat::maxHashedAssetBytes;
        const auto digest = hashable ? Sha256::ofFile(check.resolution.absolutePath) : std::nullopt;
        if (!digest || *digest != *check.asset->sha256) {
            check.failure = BundleReportCode::itemAssetUndecodable;
            check.detail = QStringLiteral("sha256 does not match the manifest");
            return;
        }
    }
    if (check.needsProbe && options.assetProbe && !options.assetProbe->probe(check.resolution.absolutePath)) {
        check.failure = BundleReportCode::itemAssetUndecodable;
        check.detail = QStringLiteral("file is present and exactly the right size but does not decode");
    }
}

// Presence, then content, for every asset. Work is shared among threads once
// there is enough of it: hashing and decoding always, file checks when there are many.
void checkAssets(std::vector<AssetCheck> &checks, BundleRootGuard &guard, const BundleOpenOptions &options)
{
    auto checkOne = [&](AssetCheck &check) {
        checkPresence(check, guard);
        checkContent(check, options);
    };
    constexpr size_t parallelPresenceFrom = 1000;
    if (options.verification == BundleVerification::sizeAndCount && checks.size() < parallelPresenceFrom) {
        for (AssetCheck &check : checks)
            checkOne(check);
        return;
    }
    const int workers = std::clamp(QThread::idealThreadCount(), 1, 8);
    std::atomic<size_t> next {0};
    auto work = [&] {
        for (size_t i = next++; i < checks.size(); i = next++)
            checkOne(checks[i]);
    };
    std::vector<std::thread> threads;
    for (int i = 1; i < workers; ++i)
        threads.emplace_back(work);
    work();
    for (auto &thread : threads)
        thread.join();
}

QString assetMessage(const QString &itemId, const QString &tier, const QString &detail)
{
    // Details that are sentences already carry their full stop.
    const QString stop = detail.endsWith(QLatin1Char('.')) ? QString() : QStringLiteral(".");
    return QStringLiteral("Item %1: %2 \u2014 %3%4").arg(itemId, tier, detail, stop);
}

std::optional<MediaType> acceptedMediaType(const QString &value, const BundleOpenOptions &options, bool *known)
{
    *known = true;
    if (value == QLatin1StringView("image"))
        return MediaType::image;
    // A live photo is a still with a motion clip, so it needs video support.
    if (value == QLatin1StringView("video") || value == QLatin1StringView("live_photo")) {
        if (!options.supportsVideo)
            return std::nullopt;
        return value == QLatin1StringView("video") ? MediaType::video : MediaType::livePhoto;
    }
    *known = false;
    return std::nullopt;
}

struct ManifestRead {
    std::optional<BundleManifest> manifest;
    std::optional<BundleError> error;
};

ManifestRead readManifest(const QString &manifestPath, BundleRootGuard &guard)
{
    ManifestRead read;
    auto unreadable = [&](const QString &cause) {
        BundleError error
            = makeError(BundleErrorCode::manifestUnreadable, QStringLiteral("Could not read the manifest: ") + cause);
        error.cause = cause;
        error.path = manifestPath;
        read.error = error;
        return read;
    };
    // The manifest obeys the assets' rule: a link may not lead it out of the bundle.
    const BundleRootGuard::Resolution resolved = guard.resolve(BundleFormat::manifestFileName);
    if (resolved.status == BundleRootGuard::Status::escapes)
        return unreadable(QStringLiteral("it leads outside the bundle folder"));
    if (resolved.status != BundleRootGuard::Status::regularFile)
        return unreadable(QStringLiteral("not a regular file"));
    if (resolved.size > BundleFormat::maxManifestBytes) {
        return unreadable(QStringLiteral("the file is %1 bytes; a manifest may be at most %2 bytes")
                              .arg(resolved.size)
                              .arg(BundleFormat::maxManifestBytes));
    }
    const qint64 measured = resolved.size;
    QFile file(resolved.absolutePath);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file.errorString());
    // Read at most one byte past the limit: the file may have grown since it was measured.
    // Sized to the file as measured, plus one byte to notice growth; never the whole limit up front.
    QByteArray bytes = file.read(measured + 1);
    if (bytes.size() > measured)
        bytes += file.read(BundleFormat::maxManifestBytes + 1 - bytes.size());
    if (file.error() != QFileDevice::NoError)
        return unreadable(file.errorString());
    if (bytes.size() > BundleFormat::maxManifestBytes)
        return unreadable(QStringLiteral("the file is larger than %1 bytes").arg(BundleFormat::maxManifestBytes));

    ManifestTextReader::Result parsed = ManifestTextReader::read(bytes);
    bytes = QByteArray();
    if (parsed.error.error != QJsonParseError::NoError) {
        const QString cause = QStringLiteral("%1 at byte %2").arg(parsed.error.errorString()).arg(parsed.error.offset);
        BundleError error
            = makeError(BundleErrorCode::manifestMalformed, QStringLiteral("Manifest is not valid JSON: ") + cause);
        error.cause = cause;
        error.path = manifestPath;
        read.error = error;
        return read;
    }
    if (!parsed.manifest) {
        BundleError error
            = makeError(BundleErrorCode::manifestMalformed, QStringLiteral("Manifest is not a JSON object."));
        error.path = manifestPath;
        read.error = error;
        return read;
    }
    if (parsed.itemsOverLimit) {
        BundleError error = makeError(BundleErrorCode::manifestMalformed,
            QStringLiteral("items holds %1 entries; a bundle may hold at most %2.")
                .arg(*parsed.itemsOverLimit)
                .arg(BundleFormat::maxItems));
        error.path = manifestPath;
        error.jsonPath = QStringLiteral("$.items");
        read.error = error;
        return read;
    }
    read.manifest = std::move(parsed.manifest);
    return read;
}

std::optional<OpenedBundleBranding> resolveBranding(
    const BundleManifest &manifest, BundleRootGuard &guard, std::vector<BundleReport> &reports)
{
    if (!manifest.branding)
        return std::nullopt;
    const BundleBrandingJson &json = *manifest.branding;
    OpenedBundleBranding branding;
    branding.displayName = json.displayName;
    branding.holding = json.holding.value_or(false);
    if (json.overlay) {
        branding.overlay.enabled = json.overlay->enabled.value_or(false);
        branding.overlay.sizePercent = json.overlay->sizePercent.value_or(branding.overlay.sizePercent);
        branding.overlay.opacity = json.overlay->opacity.value_or(branding.overlay.opacity);
        branding.overlay.marginPercent = json.overlay->marginPercent.value_or(branding.overlay.marginPercent);
    }
    branding.overlay.corner = BundleManifestMapper::overlayCorner(manifest, reports);

    if (json.logoAsset) {
        const QString &path = *json.logoAsset;
        auto report = [&](const QString &message) {
            BundleReport r;
            r.code = BundleReportCode::brandingLogoAssetMissing;
            r.message = message;
            r.assetPath = path;
            r.fieldPath = QStringLiteral("branding.logo_asset");
            reports.push_back(std::move(r));
        };
        const auto resolution = isSafeBundleRelativePath(path) ? guard.resolve(path)
                                                               : BundleRootGuard::Resolution {Status::escapes, {}, 0};
        if (resolution.status == Status::escapes) {
            report(QStringLiteral("branding.logo_asset '%1' is not a safe bundle-relative path; ignored.").arg(path));
        } else if (resolution.status == Status::absent) {
            report(QStringLiteral("branding.logo_asset '%1' is absent; branding shows without a logo.").arg(path));
        } else {
            branding.logoURL = QUrl::fromLocalFile(resolution.absolutePath);
            branding.overlay.imagePath = resolution.absolutePath;
        }
    }
    branding.overlay = BrandOverlay::normalise(branding.overlay);
    return branding;
}

} // namespace

BundleOpenResult BundleReader::open(const QString &rootArgument, const BundleOpenOptions &options)
{
    auto integrity = std::make_shared<BundleIntegrity>();
    std::vector<BundleReport> reports;

    // 1. Locate the manifest.
    const QFileInfo given(rootArgument);
    QString root = given.absoluteFilePath();
    if (given.fileName() == BundleFormat::manifestFileName)
        root = given.absolutePath();
    root = QDir::cleanPath(root);
    const QString manifestPath = root + QLatin1Char('/') + BundleFormat::manifestFileName;
    const QFileInfo manifestInfo(manifestPath);
    if (!manifestInfo.exists() || manifestInfo.isDir()) {
        BundleError error = makeError(BundleErrorCode::notABundle, QStringLiteral("No bundle.json at this path."));
        error.path = root;
        return failed(error, integrity, std::move(reports));
    }

    // 2-3. Read and parse.
    BundleRootGuard guard(root);
    ManifestRead read = readManifest(manifestPath, guard);
    if (read.error)
        return failed(*read.error, integrity, std::move(reports));

    // 4. The manifest as built from the text (cannot fail once the text parses).
    BundleManifest manifest = std::move(*read.manifest);

    // 5-9. Identity, versions and items.
    auto malformed = [&](const QString &message, const QString &jsonPath) {
        BundleError error = makeError(BundleErrorCode::manifestMalformed, message);
        error.path = manifestPath;
        error.jsonPath = jsonPath;
        return failed(error, integrity, std::move(reports));
    };
    if (manifest.format != BundleFormat::formatName) {
        BundleError error = makeError(BundleErrorCode::notABundle,
            QStringLiteral("format is '%1', expected 'sorvane.bundle'.")
                .arg(manifest.format.value_or(QStringLiteral("<absent>"))));
        error.path = manifestPath;
        error.jsonPath = QStringLiteral("$.format");
        return failed(error, integrity, std::move(reports));
    }
    if (!manifest.formatVersion)
        return malformed(QStringLiteral("format_version is required."), QStringLiteral("$.format_version"));
    if (!manifest.minReaderVersion)
        return malformed(QStringLiteral("min_reader_version is required."), QStringLiteral("$.min_reader_version"));
    if (*manifest.minReaderVersion > BundleFormat::readerVersion) {
        BundleError error = makeError(BundleErrorCode::unsupportedFutureVersion,
            QStringLiteral("Bundle requires reader version %1; this reader is version %2.")
                .arg(*manifest.minReaderVersion)
                .arg(BundleFormat::readerVersion));
        error.path = manifestPath;
        error.jsonPath = QStringLiteral("$.min_reader_version");
        error.requiredReaderVersion = *manifest.minReaderVersion;
        error.supportedReaderVersion = BundleFormat::readerVersion;
        return failed(error, integrity, std::move(reports));
    }
    if (!manifest.items)
        return malformed(QStringLiteral("items is required."), QStringLiteral("$.items"));

    // 10. Unknown members.
    if (const int unknown = manifest.totalUnknownMemberCount(); unknown > 0) {
        BundleReport report;
        report.code = BundleReportCode::unknownFieldsIgnored;
        report.message
            = QStringLiteral("%1 unrecognized manifest member(s) were ignored (forward compatibility).").arg(unknown);
        reports.push_back(std::move(report));
    }

    // 11. Preferences.
    auto bundle = std::make_shared<OpenedBundle>();
    bundle->playback = BundleManifestMapper::playback(manifest, reports);
    bundle->display = BundleManifestMapper::display(manifest, reports);

    // 12. Branding.
    bundle->branding = resolveBranding(manifest, guard, reports);

    // 13. Items. An item without an id ends the open once the items before it are walked.
    const std::vector<BundleItem> &items = *manifest.items;
    integrity->manifestItemCount = qint64(items.size());
    const auto missingId = std::find_if(items.begin(), items.end(), [](const BundleItem &item) { return !item.id; });
    const qsizetype walked = missingId - items.begin();
    const bool checkOriginals = manifest.includeOriginals.value_or(false);

    std::vector<std::optional<MediaType>> types(static_cast<size_t>(walked));
    std::vector<AssetCheck> checks;
    // Sized once: with hundreds of thousands of items a doubling vector would hold
    // its old and new storage at the same time.
    checks.reserve(std::accumulate(items.begin(), missingId, size_t(0),
        [](size_t sum, const BundleItem &item) { return sum + item.assets.size(); }));
    for (qsizetype i = 0; i < walked; ++i) {
        const BundleItem &item = items[size_t(i)];
        bool known = true;
        const QString typeText = item.mediaType.value_or(QStringLiteral("image"));
        types[size_t(i)] = acceptedMediaType(typeText, options, &known);
        if (!types[size_t(i)])
            continue;
        for (const auto &[tier, asset] : item.assets) {
            const bool isOriginal = tier == BundleFormat::tierOriginal;
            if (isOriginal && !checkOriginals)
                continue;
            AssetCheck check;
            check.itemIndex = i;
            check.tier = tier;
            check.asset = &asset;
            check.isOriginal = isOriginal;
            check.needsProbe = tier == BundleFormat::tierTile || tier == BundleFormat::tierFull
                || tier == BundleFormat::tierAnimated;
            checks.push_back(std::move(check));
        }
    }
    checkAssets(checks, guard, options);
    reports.reserve(reports.size() + size_t(std::count_if(checks.begin(), checks.end(), [](const AssetCheck &check) {
        return check.failure && !check.isOriginal;
    })) + size_t(std::count(types.begin(), types.end(), std::nullopt)));

    // Assemble in manifest order so that reports keep the order of discovery.
    size_t next = 0;
    for (qsizetype i = 0; i < walked; ++i) {
        const BundleItem &item = items[size_t(i)];
        const QString &id = *item.id;
        if (!types[size_t(i)]) {
            bool known = true;
            const QString typeText = item.mediaType.value_or(QStringLiteral("image"));
            acceptedMediaType(typeText, options, &known);
            BundleReport report;
            report.code = BundleReportCode::unsupportedMediaSkipped;
            report.itemId = id;
            report.message = known
                ? QStringLiteral("Item %1: media_type '%2' is not supported by this reader.").arg(id, typeText)
                : QStringLiteral("Item %1: media_type '%2' is unknown to this reader; skipped.").arg(id, typeText);
            reports.push_back(std::move(report));
            ++integrity->unsupportedMediaCount;
            continue;
        }

        auto mediaItem = std::make_shared<BundleMediaItem>();
        mediaItem->raw = item;
        mediaItem->id = id;
        mediaItem->mediaType = *types[size_t(i)];
        mediaItem->rootPath = root;
        mediaItem->manifestIndex = i;
        mediaItem->animationAllowed = options.supportsAnimation;
        mediaItem->sourceCreatedUtc = BundleTimestamp::parse(item.sourceCreatedUtc);
        mediaItem->sourceModifiedUtc = BundleTimestamp::parse(item.sourceModifiedUtc);
        mediaItem->capturedUtc = BundleTimestamp::parse(item.capturedUtc);

        std::optional<BundleReportCode> lastFailure;
        for (; next < checks.size() && checks[next].itemIndex == i; ++next) {
            const AssetCheck &check = checks[next];
            if (check.isOriginal) {
                ++integrity->expectedOriginalCount;
                if (!check.failure) {
                    ++integrity->resolvedOriginalCount;
                    mediaItem->resolved[check.tier] = {check.tier, *check.asset, check.resolution.absolutePath};
                }
                continue;
            }
            addBytes(integrity->expectedAssetBytes, check.asset->bytes.value_or(0));
            if (check.failure) {
                lastFailure = check.failure;
                BundleReport report;
                report.code = *check.failure;
                report.message = assetMessage(id, check.tier, check.detail);
                report.itemId = id;
                report.assetPath = check.asset->path;
                reports.push_back(std::move(report));
                continue;
            }
            addBytes(integrity->resolvedAssetBytes, check.resolution.size);
            mediaItem->resolved[check.tier] = {check.tier, *check.asset, check.resolution.absolutePath};
        }
        // A bundle that says it carries originals owes one per item: one not even listed is absent.
        if (checkOriginals && !item.asset(BundleFormat::tierOriginal))
            ++integrity->expectedOriginalCount;
        // Kept only if what it would show first is something other than its untouched original.
        const BundleResolvedAsset *shown = mediaItem->displayAsset();
        if (!shown || shown->key == BundleFormat::tierOriginal) {
            integrity->missingItems.push_back({id, lastFailure.value_or(BundleReportCode::itemAssetMissing),
                QStringLiteral("no usable asset survived the resolution ladder")});
            continue;
        }
        bundle->items.push_back(std::move(mediaItem));
    }

    if (missingId != items.end()) {
        return malformed(QStringLiteral("an item is missing its id."), QStringLiteral("$.items[%1].id").arg(walked));
    }

    // 14. Originals.
    const qint64 missingOriginals = integrity->expectedOriginalCount - integrity->resolvedOriginalCount;
    if (checkOriginals && missingOriginals > 0) {
        BundleReport report;
        report.code = BundleReportCode::originalsMissing;
        report.message = QStringLiteral("%1 of %2 originals are absent or short. Playback is unaffected.")
                             .arg(missingOriginals)
                             .arg(integrity->expectedOriginalCount);
        reports.push_back(std::move(report));
    }

    // 15. Something must be playable.
    if (bundle->items.empty()) {
        BundleError error = makeError(BundleErrorCode::noPlayableMedia,
            QStringLiteral("Manifest declared %1 items; none of them resolved to a usable asset.").arg(items.size()));
        error.path = root;
        return failed(error, integrity, std::move(reports));
    }

    // 16. Opened.
    integrity->playableItemCount = qint64(bundle->items.size());
    bundle->options = options;
    bundle->rootPath = root;
    bundle->manifest = std::move(manifest);
    bundle->integrity = integrity;
    bundle->mutableReports = std::move(reports);
    BundleOpenResult result;
    result.bundle = bundle;
    result.integrity = integrity;
    return result;
}

} // namespace sorvane
