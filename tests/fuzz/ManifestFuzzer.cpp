// Fuzz target for the manifest records, the manifest writer and the bundle reader.
//
// Every input is treated twice: as JSON text for the manifest records (parse,
// write, read back: nothing may change), and as the bundle.json of a real folder
// opened by BundleReader, whose result must be internally consistent and must
// never hand out a file that lies outside the bundle.

#include "FuzzSupport.h"
#include "bundle/BundleFormat.h"
#include "bundle/BundleManifest.h"
#include "bundle/BundleReader.h"
#include "bundle/ManifestTextReader.h"
#include "bundle/OpenedBundle.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>
#include <climits>
#include <set>
#include <sys/stat.h>

using namespace sorvane;

namespace {

// What the writer keeps of a manifest: unknown members are dropped, and an
// `items` member that was not an array is not written at all.
BundleManifest asWritten(BundleManifest m)
{
    m.itemsKeyPresent = m.items.has_value();
    m.unknownMemberCount = 0;
    const auto clear = [](auto &part) {
        if (part)
            part->unknownMemberCount = 0;
    };
    clear(m.createdBy);
    clear(m.counts);
    clear(m.derivatives);
    clear(m.playback);
    clear(m.display);
    clear(m.branding);
    if (m.branding)
        clear(m.branding->overlay);
    if (m.items) {
        for (BundleItem &item : *m.items)
            item.unknownMemberCount = 0;
    }
    return m;
}

QJsonObject parseWritten(const QByteArray &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    FUZZ_CHECK(error.error == QJsonParseError::NoError, text + "\n" + error.errorString().toUtf8());
    FUZZ_CHECK(document.isObject(), text);
    return document.object();
}

void checkRoundTrip(const QJsonObject &object)
{
    const BundleManifest read = BundleManifest::fromJson(object);
    FUZZ_CHECK(read.itemsKeyPresent == object.contains(QLatin1StringView("items")));
    FUZZ_CHECK(!read.items || read.items->size() == size_t(object.value(QLatin1StringView("items")).toArray().size()));

    const QByteArray pretty = read.toJson().serialize(true);
    const QByteArray compact = read.toJson().serialize(false);
    FUZZ_CHECK(pretty.endsWith('\n'), pretty);
    const QJsonObject prettyObject = parseWritten(pretty);
    FUZZ_CHECK(prettyObject == parseWritten(compact), pretty + "\n" + compact);

    const BundleManifest reread = BundleManifest::fromJson(prettyObject);
    // The writer emits known members only.
    FUZZ_CHECK(reread.totalUnknownMemberCount() == 0, pretty);
    if (fuzz::utf8Representable(QJsonValue(object))) {
        FUZZ_CHECK(reread == asWritten(read), pretty);
        FUZZ_CHECK(reread.toJson().serialize(true) == pretty, pretty);
    }
    // Whatever was lost, one write settles it: a second round trip changes nothing.
    FUZZ_CHECK(BundleManifest::fromJson(parseWritten(reread.toJson().serialize(false))) == reread, pretty);
}

QByteArray realPath(const QString &path)
{
    char buffer[PATH_MAX];
    return ::realpath(QFile::encodeName(path).constData(), buffer) ? QByteArray(buffer) : QByteArray();
}

// A bundle folder built once per process: bundle.json is rewritten for every input, the other
// files never change. The corpus names these files; `outside` sits next to the bundle, so links
// into it leave the root.
struct Folder {
    QTemporaryDir temp {QDir::tempPath() + QStringLiteral("/sorvane-fuzz-XXXXXX")};
    QString root = temp.path() + QStringLiteral("/bundle");
    QString manifestPath = root + QStringLiteral("/bundle.json");
    QByteArray canonicalRoot;

    Folder()
    {
        fuzz::quietMessages();
        const std::pair<const char *, QByteArray> files[] = {{"media/tile.jpg", "TILE"}, {"media/full.jpg", "FULLFULL"},
            {"media/empty.jpg", ""}, {"media/animated/anim.gif", "GIF"}, {"media/video/clip.mp4", "VIDEO!"},
            {"originals/orig.jpg", "OR"}, {"assets/branding/logo.png", "LOGO"}, {"../outside/secret.jpg", "SECRET"}};
        for (const auto &[path, contents] : files)
            fuzz::writeFile(at(path), contents);
        QDir().mkpath(at("media/folder.jpg")); // a folder, never an asset
        const std::pair<QString, const char *> links[] = {{"../../outside/secret.jpg", "media/escape.jpg"},
            {temp.path() + "/outside/secret.jpg", "media/absolute.jpg"}, {"../../outside", "media/out"},
            {"../outside/missing.jpg", "media/dangling.jpg"}, {"loop.jpg", "media/loop.jpg"},
            {"full.jpg", "media/inside.jpg"}, {"../media", "assets/media"}};
        for (const auto &[target, link] : links) {
            if (!QFile::link(target, at(link)))
                qFatal("manifest fuzzer: cannot link %s", link);
        }
        canonicalRoot = realPath(root);
        if (canonicalRoot.isEmpty())
            qFatal("manifest fuzzer: cannot resolve the bundle root");
    }
    QString at(const char *relative) const { return root + QLatin1Char('/') + QLatin1StringView(relative); }
};

Folder &folder()
{
    static Folder made; // destroyed at exit, which removes the folder
    return made;
}

// The file the system would really open for `path` lies inside the bundle.
bool landsInsideRoot(const QString &path, const Folder &f)
{
    return realPath(path).startsWith(f.canonicalRoot + '/');
}

// As the system sees it: a path ends at its first NUL.
qint64 sizeOnDisk(const QString &path)
{
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 && S_ISREG(info.st_mode) ? info.st_size : -1;
}

void checkOpened(OpenedBundle &bundle, const BundleOpenResult &result, const QJsonObject &object, const Folder &f)
{
    FUZZ_CHECK(result.integrity && bundle.integrity == result.integrity);
    FUZZ_CHECK(!bundle.items.empty());
    FUZZ_CHECK(bundle.manifest == BundleManifest::fromJson(object));
    FUZZ_CHECK(bundle.manifest.items.has_value());
    const BundleIntegrity &integrity = *bundle.integrity;
    FUZZ_CHECK(integrity.manifestItemCount == qint64(bundle.manifest.items->size()));
    FUZZ_CHECK(integrity.playableItemCount == qint64(bundle.items.size()));
    FUZZ_CHECK(integrity.resolvedOriginalCount <= integrity.expectedOriginalCount);
    FUZZ_CHECK(integrity.resolvedAssetBytes >= 0);
    FUZZ_CHECK(qint64(bundle.items.size()) + qint64(integrity.missingItems.size()) + integrity.unsupportedMediaCount
        == integrity.manifestItemCount);

    std::set<qsizetype> manifestIndices;
    for (const auto &item : bundle.items) {
        FUZZ_CHECK(item != nullptr);
        FUZZ_CHECK(item->manifestIndex >= 0 && item->manifestIndex < qsizetype(bundle.manifest.items->size()));
        FUZZ_CHECK(manifestIndices.insert(item->manifestIndex).second);
        FUZZ_CHECK(item->raw == (*bundle.manifest.items)[size_t(item->manifestIndex)]);
        FUZZ_CHECK(item->raw.id && item->id == *item->raw.id);
        bool playable = false;
        for (const auto &[tier, resolved] : item->resolved) {
            FUZZ_CHECK(resolved.key == tier);
            const BundleAsset *declared = item->raw.asset(tier);
            FUZZ_CHECK(declared && *declared == resolved.asset);
            // Containment is the point of the whole check: no symlink may lead out.
            FUZZ_CHECK(landsInsideRoot(resolved.absolutePath, f), resolved.absolutePath.toUtf8());
            FUZZ_CHECK(resolved.asset.bytes && sizeOnDisk(resolved.absolutePath) == *resolved.asset.bytes,
                resolved.absolutePath.toUtf8());
            playable = playable || tier == BundleFormat::tierTile || tier == BundleFormat::tierFull
                || tier == BundleFormat::tierAnimated || tier == BundleFormat::tierVideo;
        }
        FUZZ_CHECK(playable);
    }
    if (bundle.branding && bundle.branding->overlay.imagePath) {
        FUZZ_CHECK(
            landsInsideRoot(*bundle.branding->overlay.imagePath, f), bundle.branding->overlay.imagePath->toUtf8());
        FUZZ_CHECK(bundle.branding->logoURL.has_value());
    }

    // Every playable item exactly once, in an order that does not change between calls.
    const std::vector<qsizetype> order = bundle.playOrder();
    const std::set<qsizetype> positions(order.begin(), order.end());
    FUZZ_CHECK(order.size() == bundle.items.size() && positions.size() == order.size());
    FUZZ_CHECK(*positions.begin() >= 0 && *positions.rbegin() < qsizetype(order.size()));
    FUZZ_CHECK(bundle.playOrder() == order);

    // Playback may retire every file of an item, one after another: each step
    // offers a file not yet retired, and the end is recorded exactly once.
    BundleMediaItem *const item = bundle.item(bundle.items.front()->id);
    FUZZ_CHECK(item != nullptr);
    const size_t reportsBefore = bundle.reports().size();
    std::vector<QString> tiers;
    for (const auto &entry : item->resolved)
        tiers.push_back(entry.first);
    for (const QString &tier : tiers) {
        const std::optional<QUrl> next = bundle.markUndecodable(item->id, tier);
        FUZZ_CHECK(item->undecodable.contains(tier));
        // Two tiers may name the same file, so any live tier with that file will do.
        if (next) {
            FUZZ_CHECK(std::any_of(item->resolved.begin(), item->resolved.end(), [&](const auto &entry) {
                return entry.second.url() == *next && !item->undecodable.contains(entry.first);
            }));
        }
    }
    FUZZ_CHECK(!item->url(BundleFormat::tierFull).has_value());
    FUZZ_CHECK(!bundle.markUndecodable(item->id, BundleFormat::tierFull).has_value());
    FUZZ_CHECK(bundle.reports().size() == reportsBefore + tiers.size() + 1);
    const auto listed = std::count_if(
        bundle.integrity->missingItems.begin(), bundle.integrity->missingItems.end(), [&](const BundleMissingItem &m) {
            return m.itemId == item->id && m.reason == BundleReportCode::itemAssetUndecodable;
        });
    FUZZ_CHECK(listed == 1);
}

void checkReader(const uint8_t *data, size_t size, const std::optional<QJsonObject> &object, bool validJson)
{
    Folder &f = folder();
    fuzz::writeFile(f.manifestPath, fuzz::bytes(data, size));

    const BundleOpenResult result = BundleReader::open(f.root, BundleOpenOptions {});
    FUZZ_CHECK(result.integrity != nullptr);
    FUZZ_CHECK(result.ok() != result.error.has_value());
    if (!validJson || !object) {
        FUZZ_CHECK(!result.ok());
        FUZZ_CHECK(result.error->code == BundleErrorCode::manifestMalformed);
        return;
    }
    if (!result.ok()) {
        FUZZ_CHECK(!result.error->message.isEmpty());
        FUZZ_CHECK(result.error->code != BundleErrorCode::incompleteBundle);
    }

    // The identity and version checks come first, in a fixed order: the first that fails decides.
    const BundleManifest manifest = BundleManifest::fromJson(*object);
    const bool future = manifest.minReaderVersion && *manifest.minReaderVersion > BundleFormat::readerVersion;
    const struct {
        bool fails;
        BundleErrorCode code;
        const char *jsonPath;
    } checks[] = {
        {manifest.format != BundleFormat::formatName, BundleErrorCode::notABundle, "$.format"},
        {!manifest.formatVersion, BundleErrorCode::manifestMalformed, "$.format_version"},
        {!manifest.minReaderVersion, BundleErrorCode::manifestMalformed, "$.min_reader_version"},
        {future, BundleErrorCode::unsupportedFutureVersion, "$.min_reader_version"},
        {!manifest.items, BundleErrorCode::manifestMalformed, "$.items"},
    };
    for (const auto &check : checks) {
        if (!check.fails)
            continue;
        FUZZ_CHECK(result.error && result.error->code == check.code
            && result.error->jsonPath == QString::fromLatin1(check.jsonPath));
        FUZZ_CHECK(check.code != BundleErrorCode::unsupportedFutureVersion
            || result.error->requiredReaderVersion == manifest.minReaderVersion);
        return;
    }
    if (!result.ok())
        return;

    FUZZ_CHECK(result.standaloneReports.empty());
    const std::vector<BundleReport> &reports = result.reports();
    const auto unknownReports = std::count_if(reports.begin(), reports.end(),
        [](const BundleReport &report) { return report.code == BundleReportCode::unknownFieldsIgnored; });
    FUZZ_CHECK(unknownReports == (manifest.totalUnknownMemberCount() > 0 ? 1 : 0));
    checkOpened(*result.bundle, result, *object, f);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = fuzz::bytes(data, size);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    const bool validJson = error.error == QJsonParseError::NoError;
    std::optional<QJsonObject> object;
    if (validJson && document.isObject()) {
        object = document.object();
        checkRoundTrip(*object);
    }
    // The reader's own pass over the text must agree with Qt's parser on every input.
    const ManifestTextReader::Result read = ManifestTextReader::read(bytes);
    FUZZ_CHECK((read.error.error == QJsonParseError::NoError) == validJson, bytes);
    FUZZ_CHECK(read.manifest.has_value() == object.has_value(), bytes);
    FUZZ_CHECK(!object || *read.manifest == BundleManifest::fromJson(*object), bytes);
    checkReader(data, size, object, validJson);
    return 0;
}
