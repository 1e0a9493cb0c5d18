#include "bundle/BundleWriter.h"

#include "EngineLog.h"
#include "bundle/BundleFileOps.h"
#include "bundle/BundleFormat.h"
#include "bundle/BundleManifest.h"
#include "bundle/BundleManifestBuilder.h"
#include "bundle/BundleReadme.h"
#include "bundle/BundleShortIds.h"
#include "bundle/BundleSizeEstimator.h"
#include "bundle/BundleSourceScanner.h"
#include "bundle/BundleTimestamp.h"
#include "bundle/BundleWireValues.h"
#include "bundle/Sha256.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSysInfo>
#include <QThread>
#include <QUuid>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace sorvane {

namespace {

constexpr qint64 animationCapBytes = 26214400; // 25 MiB
const QString stagingRootName = QStringLiteral(".bundle-staging");
const QString probeFileName = QStringLiteral(".sorvane-write-probe");
const QString defaultFolderName = QStringLiteral("sorvane.bundle");

QString baseName(const QString &path)
{
    return QFileInfo(path).fileName();
}

QString suffixOf(const QString &path)
{
    return QFileInfo(path).suffix().toLower();
}

// A folder name must stay one path component.
QString folderNameFor(const QString &wanted)
{
    QString name = wanted.trimmed();
    for (const QChar bad : {QChar(u'/'), QChar(u'\\'), QChar(u'\0')})
        name.replace(bad, QLatin1Char('-'));
    if (name.isEmpty() || name == QLatin1StringView(".") || name == QLatin1StringView(".."))
        return defaultFolderName;
    return name;
}

// One source after hashing, with the id it was given.
struct HashedSource {
    BundleSourceFile source;
    QString sha256;
    QString id;
    std::optional<QDateTime> created;
    std::optional<QDateTime> modified;
};

// What encoding one source produced; filled on a worker thread, read in order afterwards.
struct ItemOutcome {
    bool kept = false;
    BundleItem item;
    std::vector<BundleWriteReport> reports;
    qint64 undecodable = 0;
    qint64 posterUnavailable = 0;
    qint64 posterFallback = 0;
    qint64 animatedDowngraded = 0;
    std::vector<std::pair<QString, qint64>> files; // tier, bytes
    std::optional<QString> fatal; // a file-system failure that ends the write
};

// Runs `work(i)` for i in [0, count) on `workers` threads; stops handing out work once `stop()` is true.
template <typename Work, typename Stop> void forEachParallel(qsizetype count, int workers, Work work, Stop stop)
{
    std::atomic<qsizetype> next {0};
    auto loop = [&] {
        for (qsizetype i = next++; i < count; i = next++) {
            if (stop())
                return;
            work(i);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 1; i < std::min<qsizetype>(workers, count); ++i)
        threads.emplace_back(loop);
    loop();
    for (auto &thread : threads)
        thread.join();
}

class FolderHandle;

class Export {
public:
    Export(const BundleWriteRequest &request, const BundleWriter::ProgressCallback &progress,
        const BundleWriter::CancelCheck &cancelled)
        : m_request(request), m_progress(progress), m_cancelled(cancelled),
          m_folderName(folderNameFor(request.bundleFolderName)),
          m_destination(QDir(request.destinationDirectory).absolutePath()),
          m_workers(request.jobs > 0 ? request.jobs : std::max(1, QThread::idealThreadCount()))
    {
    }

    BundleWriteResult run();

private:
    BundleWriteResult fail(BundleWriteErrorCode code, const QString &message);
    void progress(BundleWritePhase phase, qint64 completed, qint64 total, const QString &current = {},
        qint64 completedBytes = 0, qint64 totalBytes = 0);
    bool isCancelled();
    void addReport(BundleWriteReportCode code, const QString &message, const QString &sourcePath);

    std::optional<QString> prepareDestination();
    bool chooseStaging();
    bool hashSources(const std::vector<BundleSourceFile> &sources);
    void assignIds();
    ItemOutcome encodeItem(const HashedSource &source) const;
    void encodeImage(const HashedSource &source, ItemOutcome &outcome) const;
    void encodeVideo(const HashedSource &source, ItemOutcome &outcome) const;
    void addDerivatives(const BundleDerivativeResult &result, ItemOutcome &outcome) const;
    BundleAsset assetFor(const QString &absolutePath, qint64 bytes, const QString &knownSha256 = {}) const;
    std::optional<QString> stagingWriteError() const;
    std::optional<QString> copyOriginals(std::vector<BundleItem> &items);
    std::optional<QString> copyPlayerAndLogo();
    std::optional<QString> writeManifest(std::vector<BundleItem> items);
    std::optional<BundleWriteResult> finalize();

    QString staged(const QString &relative) const { return m_staging + QLatin1Char('/') + relative; }

    const BundleWriteRequest &m_request;
    const BundleWriter::ProgressCallback &m_progress;
    const BundleWriter::CancelCheck &m_cancelled;
    const QString m_folderName;
    const QString m_destination;
    const int m_workers;
    QString m_staging;
    std::unique_ptr<FolderHandle> m_stagingHandle;
    std::vector<HashedSource> m_hashed;
    std::vector<BundleTierTarget> m_tiers;
    qint64 m_assetFiles = 0;
    std::map<QString, qint64> m_bytesPerTier;
    BundleWriteResult m_result;
    std::mutex m_progressLock;
    std::atomic<bool> m_wasCancelled {false};
};

void Export::progress(BundleWritePhase phase, qint64 completed, qint64 total, const QString &current,
    qint64 completedBytes, qint64 totalBytes)
{
    if (!m_progress)
        return;
    // Worker threads report too; the caller sees one call at a time.
    const std::lock_guard lock(m_progressLock);
    BundleWriteProgress p;
    p.phase = phase;
    p.completed = completed;
    p.total = total;
    if (!current.isEmpty())
        p.currentItem = current;
    p.completedBytes = completedBytes;
    p.totalBytes = totalBytes;
    m_progress(p);
}

bool Export::isCancelled()
{
    if (!m_wasCancelled && m_cancelled && m_cancelled())
        m_wasCancelled = true;
    return m_wasCancelled;
}

void Export::addReport(BundleWriteReportCode code, const QString &message, const QString &sourcePath)
{
    m_result.reports.push_back({code, message, sourcePath});
}

BundleWriteResult Export::fail(BundleWriteErrorCode code, const QString &message)
{
    m_result.errorCode = code;
    m_result.errorMessage = message;
    m_result.bundlePath.reset();
    qCWarning(lcWriter, "Export failed: %s", qUtf8Printable(message));
    if (!m_staging.isEmpty()) {
        if (const auto error = BundleFileOps::removeTree(m_staging))
            qCWarning(lcWriter, "Could not clean up %s: %s", qUtf8Printable(m_staging), qUtf8Printable(*error));
        // The staging root goes too once nothing else is in it.
        QDir().rmdir(m_destination + QLatin1Char('/') + stagingRootName);
    }
    return m_result;
}

std::optional<QString> Export::prepareDestination()
{
    if (const auto error = BundleFileOps::makeFolder(m_destination))
        return error;
    const QString probe = m_destination + QLatin1Char('/') + probeFileName;
    QFile file(probe);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write("probe", 5) != 5 || !file.flush()) {
        const QString error = file.errorString();
        file.close();
        QFile::remove(probe);
        return error;
    }
    file.close();
    if (!QFile::remove(probe))
        return file.errorString();
    return std::nullopt;
}

// An open handle on the staging folder: a folder removed while it is held keeps its
// inode, so one made again under the same name is told apart from it.
class FolderHandle {
public:
    explicit FolderHandle(const QString &path)
        : m_fd(::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
    }
    ~FolderHandle()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    FolderHandle(const FolderHandle &) = delete;
    FolderHandle &operator=(const FolderHandle &) = delete;

    // Whether `path` still names the folder this handle holds.
    bool stillAt(const QString &path) const
    {
        struct stat held, named;
        return m_fd >= 0 && ::fstat(m_fd, &held) == 0 && held.st_nlink > 0
            && ::stat(QFile::encodeName(path).constData(), &named) == 0 && held.st_dev == named.st_dev
            && held.st_ino == named.st_ino;
    }

private:
    int m_fd;
};

bool Export::chooseStaging()
{
    const QString root = m_destination + QLatin1Char('/') + stagingRootName;
    for (int k = 1; k <= 999; ++k) {
        const QString name = k == 1 ? m_folderName + QStringLiteral(".partial")
                                    : QStringLiteral("%1.%2.partial").arg(m_folderName).arg(k);
        const QString candidate = root + QLatin1Char('/') + name;
        if (BundleFileOps::exists(candidate))
            continue;
        if (const auto error = BundleFileOps::makeFolder(candidate)) {
            fail(BundleWriteErrorCode::writeFailed, *error);
            return false;
        }
        m_staging = candidate;
        m_stagingHandle = std::make_unique<FolderHandle>(candidate);
        return true;
    }
    fail(BundleWriteErrorCode::writeFailed, QStringLiteral("No free staging folder name for '%1'.").arg(m_folderName));
    return false;
}

bool Export::hashSources(const std::vector<BundleSourceFile> &sources)
{
    const qsizetype count = qsizetype(sources.size());
    qint64 totalBytes = 0;
    for (const BundleSourceFile &source : sources)
        totalBytes += source.bytes;
    std::vector<std::optional<QString>> digests(sources.size());
    std::vector<QString> errors(sources.size());
    std::atomic<qint64> done {0}, doneBytes {0};
    progress(BundleWritePhase::hashing, 0, count, {}, 0, totalBytes);
    forEachParallel(
        count, m_workers,
        [&](qsizetype i) {
            const BundleSourceFile &source = sources[size_t(i)];
            digests[size_t(i)] = Sha256::ofFile(source.path, &errors[size_t(i)]);
            progress(
                BundleWritePhase::hashing, ++done, count, baseName(source.path), doneBytes += source.bytes, totalBytes);
        },
        [&] { return isCancelled(); });
    if (isCancelled())
        return false;

    // The first source of each content is kept; later copies are merged into it.
    QHash<QString, QString> firstWithDigest;
    for (size_t i = 0; i < sources.size(); ++i) {
        const BundleSourceFile &source = sources[i];
        if (!digests[i]) {
            addReport(BundleWriteReportCode::sourceUndecodable,
                QStringLiteral("%1 could not be read: %2").arg(baseName(source.path), errors[i]), source.path);
            ++m_result.undecodableSourceCount;
            continue;
        }
        const auto kept = firstWithDigest.constFind(*digests[i]);
        if (kept != firstWithDigest.constEnd()) {
            addReport(BundleWriteReportCode::duplicateSourceMerged,
                QStringLiteral("%1 has the same content as %2; exported once.")
                    .arg(baseName(source.path), baseName(*kept)),
                source.path);
            ++m_result.duplicateSourceCount;
            continue;
        }
        firstWithDigest.insert(*digests[i], source.path);
        const QFileInfo info(source.path);
        HashedSource hashed {source, *digests[i], {}, std::nullopt, std::nullopt};
        // Creation time when the file system keeps one, else the last change: a
        // missing date would make a date-ordered bundle play in listing order.
        const QDateTime modified = info.lastModified().toUTC();
        const QDateTime born = info.birthTime().toUTC();
        if (modified.isValid())
            hashed.modified = modified;
        hashed.created = born.isValid() ? std::optional(born) : hashed.modified;
        m_hashed.push_back(std::move(hashed));
    }
    return true;
}

void Export::assignIds()
{
    std::vector<QString> digests;
    for (const HashedSource &source : m_hashed)
        digests.push_back(source.sha256);
    const BundleShortIds ids = BundleShortIds::assign(digests);
    for (size_t i = 0; i < m_hashed.size(); ++i)
        m_hashed[i].id = ids.ids[i];
    for (const auto &group : ids.extended) {
        const QString &shortId = group.first;
        const int count = group.second;
        const auto first = std::find_if(m_hashed.begin(), m_hashed.end(),
            [&](const HashedSource &source) { return source.sha256.startsWith(shortId); });
        addReport(BundleWriteReportCode::hashCollisionExtended,
            QStringLiteral("%1 items shared the short id %2; all extended to 32 hex.").arg(count).arg(shortId),
            first->source.path);
    }
}

BundleAsset Export::assetFor(const QString &absolutePath, qint64 bytes, const QString &knownSha256) const
{
    BundleAsset asset;
    asset.path = QDir(m_staging).relativeFilePath(absolutePath);
    asset.bytes = bytes;
    if (m_request.emitSha256)
        asset.sha256 = knownSha256.isEmpty() ? Sha256::ofFile(absolutePath).value_or(QString()) : knownSha256;
    return asset;
}

std::optional<QString> Export::stagingWriteError() const
{
    const QString probe = staged(probeFileName);
    QFile file(probe);
    std::optional<QString> error;
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(4096, 'x')) != 4096 || !file.flush())
        error = file.errorString();
    file.close();
    QFile::remove(probe);
    return error;
}

void Export::addDerivatives(const BundleDerivativeResult &result, ItemOutcome &outcome) const
{
    for (const BundleDerivativeFile &file : result.files) {
        BundleAsset asset = assetFor(file.path, file.bytes);
        asset.w = file.width;
        asset.h = file.height;
        outcome.item.assets.emplace_back(file.tier, asset);
        outcome.files.emplace_back(file.tier, file.bytes);
    }
}

void Export::encodeImage(const HashedSource &source, ItemOutcome &outcome) const
{
    const QString &path = source.source.path;
    const auto undecodable = [&] {
        outcome.reports.push_back({BundleWriteReportCode::sourceUndecodable,
            QStringLiteral("%1 could not be decoded and was left out.").arg(baseName(path)), path});
        outcome.undecodable = 1;
    };
    const auto info = m_request.derivativeEncoder->inspect(path);
    if (!info) {
        undecodable();
        return;
    }

    QString animatedCopy;
    const QString suffix = suffixOf(path);
    const bool animated
        = info->frames > 1 && (suffix == QLatin1StringView("gif") || suffix == QLatin1StringView("webp"));
    if (animated && source.source.bytes <= animationCapBytes) {
        animatedCopy = staged(QStringLiteral("%1/%2.%3").arg(BundleFormat::animatedDir, source.id, suffix));
        if (const auto error = BundleFileOps::copyFile(path, animatedCopy)) {
            outcome.fatal = *error;
            return;
        }
        BundleAsset asset = assetFor(animatedCopy, source.source.bytes, source.sha256);
        asset.w = info->width;
        asset.h = info->height;
        outcome.item.assets.emplace_back(BundleFormat::tierAnimated, asset);
        outcome.files.emplace_back(BundleFormat::tierAnimated, source.source.bytes);
        outcome.item.animated = true;
    } else if (animated) {
        outcome.reports.push_back({BundleWriteReportCode::animatedAssetOmitted,
            QStringLiteral("%1 is %2 MB, over the 25 MB animation cap; exported as a still.")
                .arg(baseName(path))
                .arg(source.source.bytes >> 20),
            path});
        outcome.animatedDowngraded = 1;
    }

    const BundleDerivativeResult result = m_request.derivativeEncoder->encode(path, m_tiers, source.id);
    if (!result.ok()) {
        if (!animatedCopy.isEmpty())
            QFile::remove(animatedCopy);
        // A full or failing disk is the write's failure, not the photo's.
        if (result.writeFailed) {
            outcome.fatal = *result.error;
            return;
        }
        if (const auto error = stagingWriteError()) {
            outcome.fatal = *error;
            return;
        }
        outcome.item.assets.clear();
        outcome.files.clear();
        outcome.item.animated.reset();
        undecodable();
        return;
    }
    addDerivatives(result, outcome);
    outcome.kept = true;
}

void Export::encodeVideo(const HashedSource &source, ItemOutcome &outcome) const
{
    const QString &path = source.source.path;
    const QString name = baseName(path);
    BundleVideoInspection inspection;
    if (m_request.videoSource)
        inspection = m_request.videoSource->inspect(path);
    if (inspection.error || inspection.posterOutcome == BundlePosterOutcome::unavailable || !inspection.poster) {
        outcome.reports.push_back({BundleWriteReportCode::videoPosterUnavailable,
            QStringLiteral("%1 could not produce a poster frame and was left out.").arg(name), path});
        outcome.posterUnavailable = 1;
        return;
    }
    if (inspection.posterOutcome == BundlePosterOutcome::fallback) {
        outcome.reports.push_back({BundleWriteReportCode::videoPosterFallbackUsed,
            QStringLiteral("%1: poster came from the fallback timestamp.").arg(name), path});
        outcome.posterFallback = 1;
    }
    const BundleDerivativeResult poster = m_request.derivativeEncoder->encode(*inspection.poster, m_tiers, source.id);
    if (!poster.ok()) {
        if (const auto error = stagingWriteError()) {
            outcome.fatal = *error;
            return;
        }
        outcome.reports.push_back({BundleWriteReportCode::videoPosterUnavailable,
            QStringLiteral("%1: poster frame could not be written; item left out.").arg(name), path});
        outcome.posterUnavailable = 1;
        return;
    }

    const QString copy = staged(QStringLiteral("%1/%2.%3").arg(BundleFormat::videoDir, source.id, suffixOf(path)));
    if (const auto error = BundleFileOps::copyFile(path, copy)) {
        outcome.fatal = *error;
        return;
    }
    BundleAsset video = assetFor(copy, source.source.bytes, source.sha256);
    video.w = inspection.width;
    video.h = inspection.height;
    if (inspection.durationSeconds > 0)
        video.durationSeconds = inspection.durationSeconds;
    if (!inspection.container.isEmpty())
        video.container = inspection.container;
    if (!inspection.videoCodec.isEmpty())
        video.videoCodec = inspection.videoCodec;
    video.audioCodec = inspection.audioCodec;
    video.hasAudio = inspection.hasAudio;
    addDerivatives(poster, outcome);
    outcome.item.assets.emplace_back(BundleFormat::tierVideo, video);
    outcome.files.emplace_back(BundleFormat::tierVideo, source.source.bytes);
    outcome.kept = true;
}

ItemOutcome Export::encodeItem(const HashedSource &source) const
{
    ItemOutcome outcome;
    BundleItem &item = outcome.item;
    item.id = source.id;
    item.mediaType = source.source.isVideo ? QStringLiteral("video") : QStringLiteral("image");
    if (m_request.includeSourceNames)
        item.sourceName = baseName(source.source.path);
    item.sourceBytes = source.source.bytes;
    if (source.created)
        item.sourceCreatedUtc = BundleTimestamp::format(*source.created);
    if (source.modified)
        item.sourceModifiedUtc = BundleTimestamp::format(*source.modified);
    if (source.source.isVideo)
        encodeVideo(source, outcome);
    else
        encodeImage(source, outcome);
    return outcome;
}

std::optional<QString> Export::copyOriginals(std::vector<BundleItem> &items)
{
    const qsizetype total = qsizetype(items.size());
    progress(BundleWritePhase::copyingOriginals, 0, total);
    QHash<QString, const HashedSource *> byId;
    for (const HashedSource &source : m_hashed)
        byId.insert(source.id, &source);
    qsizetype done = 0;
    for (BundleItem &item : items) {
        const HashedSource *source = byId.value(*item.id);
        const QString suffix = suffixOf(source->source.path);
        const QString relative = QStringLiteral("%1/%2%3").arg(
            BundleFormat::originalsDir, *item.id, suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix);
        if (const auto error = BundleFileOps::copyFile(source->source.path, staged(relative)))
            return error;
        item.assets.emplace_back(
            BundleFormat::tierOriginal, assetFor(staged(relative), source->source.bytes, source->sha256));
        ++m_result.originalsWritten;
        m_result.originalBytesWritten += source->source.bytes;
        m_bytesPerTier[BundleFormat::tierOriginal] += source->source.bytes;
        progress(BundleWritePhase::copyingOriginals, ++done, total, baseName(source->source.path));
    }
    return std::nullopt;
}

std::optional<QString> Export::copyPlayerAndLogo()
{
    if (m_request.flavor == BundleFlavor::withPlayer) {
        progress(BundleWritePhase::copyingPlayer, 0, 1);
        if (const auto error = BundleFileOps::copyTree(
                *m_request.playerPayloadDirectory, staged(BundleFormat::playerDir), &m_result.playerBytesWritten))
            return error;
        progress(BundleWritePhase::copyingPlayer, 1, 1);
    }
    if (m_request.branding && m_request.branding->logoFile) {
        if (const auto error = BundleFileOps::makeFolder(staged(BundleFormat::brandingDir)))
            return error;
        if (const auto error
            = m_request.derivativeEncoder->writePng(*m_request.branding->logoFile, staged(BundleFormat::logoPath)))
            return error;
    }
    return std::nullopt;
}

std::optional<QString> Export::writeManifest(std::vector<BundleItem> items)
{
    progress(BundleWritePhase::writingManifest, 0, 1);
    const QString created = BundleTimestamp::format(QDateTime::currentDateTimeUtc());
    BundleManifest m;
    m.format = BundleFormat::formatName;
    m.formatVersion = BundleFormat::formatVersionWritten;
    m.minReaderVersion = BundleFormat::minReaderVersionWritten;
    m.bundleId = QUuid::createUuid().toString(QUuid::WithoutBraces);
    m.title = m_request.title;
    m.createdUtc = created;
    m.createdBy = BundleCreatedBy {m_request.appName, m_request.appVersion, QSysInfo::kernelType(), 1, 0};
    m.flavor = toWire(m_request.flavor);
    m.includeOriginals = m_request.includeOriginals;
    m.counts = BundleCounts {qint64(items.size()), m_assetFiles, m_result.assetBytesWritten, m_result.originalsWritten,
        m_result.originalBytesWritten, 0};
    m.derivatives = BundleDerivatives {
        std::vector<BundleTier> {{BundleFormat::tierTile, BundleFormat::tileLongEdge, QStringLiteral("media/tile")},
            {BundleFormat::tierFull, BundleFormat::fullLongEdge, QStringLiteral("media/full")}},
        false, true, true, 0};
    m.playback = BundleManifestBuilder::playback(m_request.playback);
    m.display = BundleManifestBuilder::display(m_request.display);
    if (m_request.flavor == BundleFlavor::withPlayer) {
        m.players = std::vector<BundlePlayerEntry> {
            {m_request.playerPlatform, m_request.playerEntryFileName, BundleFormat::playerDir, m_request.playerVersion,
                m_request.playerReaderCapabilityVersion, m_result.playerBytesWritten}};
    }
    if (m_request.branding) {
        const BundleWriteBranding &b = *m_request.branding;
        BundleBrandingJson branding;
        branding.displayName = b.displayName;
        if (b.logoFile)
            branding.logoAsset = BundleFormat::logoPath;
        branding.holding = b.holding;
        branding.overlay = BundleBrandingOverlayJson {b.overlayEnabled, toWire(b.overlayCorner), b.overlaySizePercent,
            b.overlayOpacity, b.overlayMarginPercent, 0};
        m.branding = branding;
    }
    const qint64 itemCount = qint64(items.size());
    m.items = std::move(items);
    m.itemsKeyPresent = true;

    const QByteArray manifest = m.toJson().serialize();
    // A bundle no reader would open is not worth finishing.
    if (manifest.size() > BundleFormat::maxManifestBytes || itemCount > BundleFormat::maxItems) {
        return QStringLiteral("the manifest of %1 items would take %2 bytes; a bundle may hold at most %3 items "
                              "in %4 bytes. Export the photos as several bundles.")
            .arg(itemCount)
            .arg(manifest.size())
            .arg(BundleFormat::maxItems)
            .arg(BundleFormat::maxManifestBytes);
    }
    if (const auto error = BundleFileOps::writeAtomically(staged(BundleFormat::manifestFileName), manifest))
        return error;
    if (m_request.writeReadme) {
        const QString readme = BundleReadme::text(m_request.title, itemCount, created, m_request.flavor);
        if (const auto error = BundleFileOps::writeAtomically(staged(BundleFormat::readmeFileName), readme.toUtf8()))
            return error;
    }
    progress(BundleWritePhase::writingManifest, 1, 1);
    return std::nullopt;
}

std::optional<BundleWriteResult> Export::finalize()
{
    progress(BundleWritePhase::finalizing, 0, 1);
    // Removed while we wrote (the stick pulled, the folder deleted) and made again by a
    // later write: what it holds now is only part of the bundle.
    if (!m_stagingHandle || !m_stagingHandle->stillAt(m_staging)) {
        return fail(BundleWriteErrorCode::writeFailed,
            QStringLiteral("The destination was removed during the export: %1").arg(m_destination));
    }
    const QString first = m_destination + QLatin1Char('/') + m_folderName;
    QString target;
    bool replacing = false;
    if (!BundleFileOps::exists(first)) {
        target = first;
    } else if (m_request.replaceExisting
        && QFileInfo(first + QLatin1Char('/') + BundleFormat::manifestFileName).isFile()) {
        // Only a bundle is replaced; any other folder of that name is left alone.
        target = first;
        replacing = true;
    } else {
        for (int k = 2; k <= 999 && target.isEmpty(); ++k) {
            const QString candidate = QStringLiteral("%1 %2").arg(first).arg(k);
            if (!BundleFileOps::exists(candidate))
                target = candidate;
        }
        if (target.isEmpty()) {
            return fail(BundleWriteErrorCode::writeFailed,
                QStringLiteral("Every folder name from '%1' to '%1 999' is already taken.").arg(m_folderName));
        }
    }

    QString retired;
    if (replacing) {
        retired = m_staging + QStringLiteral(".replaced");
        if (const auto error = BundleFileOps::rename(target, retired))
            return fail(BundleWriteErrorCode::writeFailed, *error);
    }
    if (const auto error = BundleFileOps::rename(m_staging, target)) {
        if (replacing)
            BundleFileOps::rename(retired, target); // put the old bundle back
        return fail(BundleWriteErrorCode::writeFailed, *error);
    }
    m_staging.clear();
    if (replacing) {
        if (const auto error = BundleFileOps::removeTree(retired))
            qCWarning(lcWriter, "Could not clean up %s: %s", qUtf8Printable(retired), qUtf8Printable(*error));
    }
    QDir().rmdir(m_destination + QLatin1Char('/') + stagingRootName);
    m_result.bundlePath = target;
    m_result.replacedExistingBundle = replacing;
    progress(BundleWritePhase::finalizing, 1, 1);
    return std::nullopt;
}

BundleWriteResult Export::run()
{
    // Player checks come before anything touches the disk.
    if (m_request.flavor == BundleFlavor::withPlayer) {
        if (m_request.playerReaderCapabilityVersion < BundleFormat::minReaderVersionWritten) {
            return fail(BundleWriteErrorCode::playerTooOldForBundle,
                QStringLiteral("The bundled player reads format version %1, but this bundle requires %2. "
                               "Refusing to write a stick whose own player would reject it.")
                    .arg(m_request.playerReaderCapabilityVersion)
                    .arg(BundleFormat::minReaderVersionWritten));
        }
        if (!m_request.playerPayloadDirectory) {
            return fail(BundleWriteErrorCode::playerPayloadMissing,
                QStringLiteral("A with-player export needs a player payload directory. (M4 produces the real one.)"));
        }
        if (!QFileInfo(*m_request.playerPayloadDirectory).isDir()) {
            return fail(BundleWriteErrorCode::playerPayloadMissing,
                QStringLiteral("The player payload directory '%1' does not exist.")
                    .arg(*m_request.playerPayloadDirectory));
        }
    }
    if (!m_request.derivativeEncoder)
        return fail(BundleWriteErrorCode::writeFailed, QStringLiteral("No image encoder was given to the export."));

    progress(BundleWritePhase::scanning, 0, 0);
    QStringList unnamedIn;
    const std::vector<BundleSourceFile> sources = BundleSourceScanner::scan(m_request, &unnamedIn);
    progress(BundleWritePhase::scanning, qint64(sources.size()), qint64(sources.size()));
    for (const QString &folder : unnamedIn) {
        addReport(BundleWriteReportCode::sourceUndecodable,
            QStringLiteral("A file in %1 was left out: its name is not valid UTF-8.").arg(folder), folder);
        ++m_result.undecodableSourceCount;
    }
    if (sources.empty())
        return fail(BundleWriteErrorCode::noSourceMedia, QStringLiteral("No supported media found in the sources."));
    if (m_request.branding && m_request.branding->logoFile
        && !m_request.derivativeEncoder->inspect(*m_request.branding->logoFile)) {
        return fail(BundleWriteErrorCode::writeFailed,
            QStringLiteral("The logo '%1' is not an image this export can read.").arg(*m_request.branding->logoFile));
    }

    if (const auto error = prepareDestination())
        return fail(BundleWriteErrorCode::destinationUnwritable,
            QStringLiteral("Could not prepare the destination: ") + *error);
    if (!chooseStaging())
        return m_result;

    if (!hashSources(sources))
        return fail(BundleWriteErrorCode::cancelled, QStringLiteral("Cancelled."));
    assignIds();

    // Derivatives: sources are encoded in parallel; outcomes are taken in export order.
    for (const auto &[tier, edge] : {std::pair {BundleFormat::tierTile, BundleFormat::tileLongEdge},
             std::pair {BundleFormat::tierFull, BundleFormat::fullLongEdge}}) {
        m_tiers.push_back({tier, edge, staged(QStringLiteral("media/") + tier)});
        if (const auto error = BundleFileOps::makeFolder(m_tiers.back().directory))
            return fail(BundleWriteErrorCode::writeFailed, *error);
    }
    for (const QString &folder : {BundleFormat::animatedDir, BundleFormat::videoDir}) {
        if (const auto error = BundleFileOps::makeFolder(staged(folder)))
            return fail(BundleWriteErrorCode::writeFailed, *error);
    }
    if (m_request.includeOriginals) {
        if (const auto error = BundleFileOps::makeFolder(staged(BundleFormat::originalsDir)))
            return fail(BundleWriteErrorCode::writeFailed, *error);
    }
    const qsizetype count = qsizetype(m_hashed.size());
    std::vector<ItemOutcome> outcomes(m_hashed.size());
    std::atomic<qint64> done {0};
    std::atomic<bool> fatal {false};
    progress(BundleWritePhase::writingDerivatives, 0, count);
    forEachParallel(
        count, m_workers,
        [&](qsizetype i) {
            outcomes[size_t(i)] = encodeItem(m_hashed[size_t(i)]);
            if (outcomes[size_t(i)].fatal)
                fatal = true;
            progress(BundleWritePhase::writingDerivatives, ++done, count, baseName(m_hashed[size_t(i)].source.path));
        },
        [&] { return fatal || isCancelled(); });
    if (isCancelled())
        return fail(BundleWriteErrorCode::cancelled, QStringLiteral("Cancelled."));

    std::vector<BundleItem> items;
    for (ItemOutcome &outcome : outcomes) {
        if (outcome.fatal)
            return fail(BundleWriteErrorCode::writeFailed, *outcome.fatal);
        for (BundleWriteReport &report : outcome.reports)
            m_result.reports.push_back(std::move(report));
        m_result.undecodableSourceCount += outcome.undecodable;
        m_result.videoPosterUnavailableCount += outcome.posterUnavailable;
        m_result.videoPosterFallbackCount += outcome.posterFallback;
        m_result.animatedDowngradedCount += outcome.animatedDowngraded;
        if (!outcome.kept)
            continue;
        for (const auto &[tier, bytes] : outcome.files) {
            ++m_assetFiles;
            m_result.assetBytesWritten += bytes;
            m_bytesPerTier[tier] += bytes;
        }
        items.push_back(std::move(outcome.item));
    }
    m_result.assetFilesWritten = m_assetFiles;
    m_result.itemsWritten = qint64(items.size());
    if (items.empty()) {
        return fail(BundleWriteErrorCode::noSourceMedia,
            QStringLiteral("Nothing could be exported: no source file produced a usable derivative."));
    }

    if (m_request.includeOriginals) {
        if (const auto error = copyOriginals(items))
            return fail(BundleWriteErrorCode::writeFailed, *error);
    }
    if (const auto error = copyPlayerAndLogo())
        return fail(BundleWriteErrorCode::writeFailed, *error);
    if (const auto error = writeManifest(std::move(items)))
        return fail(BundleWriteErrorCode::writeFailed, *error);
    if (auto failed = finalize())
        return *failed;
    for (const auto &[tier, bytes] : m_bytesPerTier)
        m_result.bytesPerTier.emplace_back(tier, bytes);
    return m_result;
}

} // namespace

BundleWriteResult BundleWriter::write(
    const BundleWriteRequest &request, const ProgressCallback &progress, const CancelCheck &cancelled)
{
    return Export(request, progress, cancelled).run();
}

BundleSourceScan BundleWriter::scan(const BundleWriteRequest &request)
{
    BundleSourceScan scan;
    scan.sources = BundleSourceScanner::scan(request);
    scan.estimate = BundleSizeEstimator::estimate(request, scan.sources);
    return scan;
}

} // namespace sorvane
