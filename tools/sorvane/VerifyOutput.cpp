#include "VerifyOutput.h"

#include "JsonStreamWriter.h"
#include "TextFormat.h"

#include "bundle/BundleSort.h"

namespace sorvane::cli {

QString toString(BundleVerification level)
{
    switch (level) {
    case BundleVerification::sizeAndCount:
        return QStringLiteral("size");
    case BundleVerification::decode:
        return QStringLiteral("decode");
    case BundleVerification::full:
        return QStringLiteral("full");
    }
    return {};
}

namespace {

BundleJSON errorJson(const BundleError &error)
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("code"), toString(error.code));
    j.insert(QStringLiteral("message"), error.message);
    j.insert(QStringLiteral("path"), error.path);
    j.insert(QStringLiteral("jsonPath"), error.jsonPath);
    j.insert(QStringLiteral("cause"), error.cause);
    j.insert(QStringLiteral("requiredReaderVersion"), error.requiredReaderVersion);
    j.insert(QStringLiteral("supportedReaderVersion"), error.supportedReaderVersion);
    return j;
}

BundleJSON reportJson(const BundleReport &report)
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("code"), toString(report.code));
    j.insert(QStringLiteral("message"), report.message);
    j.insert(QStringLiteral("itemId"), report.itemId);
    j.insert(QStringLiteral("assetPath"), report.assetPath);
    j.insert(QStringLiteral("fieldPath"), report.fieldPath);
    j.insert(QStringLiteral("unrecognizedValue"), report.unrecognizedValue);
    j.insert(QStringLiteral("defaultUsed"), report.defaultUsed);
    return j;
}

// Integrity with its list of missing items, which may be as long as the manifest.
void writeIntegrity(JsonStreamWriter &w, const BundleIntegrity &integrity)
{
    w.beginObject();
    const std::pair<const char *, qint64> counts[]
        = {{"manifestItemCount", integrity.manifestItemCount}, {"playableItemCount", integrity.playableItemCount},
            {"expectedAssetBytes", integrity.expectedAssetBytes}, {"resolvedAssetBytes", integrity.resolvedAssetBytes},
            {"expectedOriginalCount", integrity.expectedOriginalCount},
            {"resolvedOriginalCount", integrity.resolvedOriginalCount},
            {"unsupportedMediaCount", integrity.unsupportedMediaCount}};
    for (const auto &[name, count] : counts) {
        w.key(QLatin1StringView(name));
        w.value(count);
    }
    w.key(QStringLiteral("missingItems"));
    w.beginArray();
    for (const BundleMissingItem &item : integrity.missingItems) {
        w.value(BundleJSON::object({{QStringLiteral("itemId"), item.itemId},
            {QStringLiteral("reason"), toString(item.reason)}, {QStringLiteral("detail"), item.detail}}));
    }
    w.end();
    w.end();
}

BundleJSON itemJson(const BundleMediaItem &item)
{
    BundleJSON tiers = BundleJSON::object();
    for (const auto &[tier, resolved] : item.resolved) {
        BundleJSON t = BundleJSON::object();
        t.insert(QStringLiteral("path"), resolved.asset.path);
        t.insert(QStringLiteral("file"), resolved.absolutePath);
        t.insert(QStringLiteral("bytes"), resolved.asset.bytes);
        t.insert(QStringLiteral("w"), resolved.asset.w);
        t.insert(QStringLiteral("h"), resolved.asset.h);
        tiers.insert(tier, t);
    }
    return BundleJSON::object({{QStringLiteral("id"), item.id}, {QStringLiteral("mediaType"), toRaw(item.mediaType)},
        {QStringLiteral("manifestIndex"), qint64(item.manifestIndex)}, {QStringLiteral("tiers"), tiers}});
}

qint64 verifiedFileCount(const OpenedBundle &bundle)
{
    qint64 count = 0;
    for (const auto &item : bundle.items)
        count += qint64(item->resolved.size()) - qint64(item->resolved.count(QStringLiteral("original")));
    return count;
}

} // namespace

void VerifyOutput::writeJson(QTextStream &out) const
{
    JsonStreamWriter w(out);
    auto member = [&](const QString &name, const BundleJSON &value) {
        w.key(name);
        w.value(value);
    };
    auto optionalMember = [&](const QString &name, const std::optional<QString> &value) {
        if (value)
            member(name, *value);
    };
    w.beginObject();
    member(QStringLiteral("path"), argument);
    member(QStringLiteral("level"), toString(level));
    member(QStringLiteral("opened"), result.ok());
    if (result.error)
        member(QStringLiteral("error"), errorJson(*result.error));
    if (result.bundle) {
        member(QStringLiteral("root"), result.bundle->rootPath);
        optionalMember(QStringLiteral("bundleId"), result.bundle->manifest.bundleId);
        optionalMember(QStringLiteral("title"), result.bundle->manifest.title);
    }
    w.key(QStringLiteral("reports"));
    w.beginArray();
    for (const BundleReport &report : result.reports())
        w.value(reportJson(report));
    w.end();
    w.key(QStringLiteral("integrity"));
    writeIntegrity(w, *result.integrity);
    w.key(QStringLiteral("items"));
    w.beginArray();
    if (result.bundle) {
        for (const auto &item : result.bundle->items)
            w.value(itemJson(*item));
    }
    w.end();
    w.key(QStringLiteral("playOrder"));
    w.beginArray();
    if (result.bundle) {
        for (const qsizetype position : playOrder)
            w.value(result.bundle->items[size_t(position)]->id);
    }
    w.end();
    w.end();
    w.finish();
}

void VerifyOutput::writeText(QTextStream &out) const
{
    const BundleIntegrity &integrity = *result.integrity;
    if (!result.ok()) {
        const BundleError &error = *result.error;
        out << "sorvane verify: the bundle could not be opened.\n"
            << "  " << toString(error.code) << ": " << error.message << "\n";
        if (error.path)
            out << "  path: " << *error.path << "\n";
        if (error.jsonPath)
            out << "  in the manifest at: " << *error.jsonPath << "\n";
        if (!integrity.missingItems.empty())
            out << "  " << integrity.missingItems.size() << " item(s) had no usable file.\n";
        if (!result.standaloneReports.empty()) {
            out << "Reports before the failure (" << result.standaloneReports.size() << "):\n";
            for (const BundleReport &report : result.standaloneReports)
                out << "  " << toString(report.code) << ": " << report.message << "\n";
        }
        return;
    }

    const OpenedBundle &bundle = *result.bundle;
    out << "Bundle     " << bundle.rootPath << "\n";
    if (bundle.manifest.title)
        out << "Title      " << *bundle.manifest.title << "\n";
    out << "Items      " << integrity.manifestItemCount << " in the manifest, " << integrity.playableItemCount
        << " playable";
    if (!integrity.missingItems.empty())
        out << ", " << integrity.missingItems.size() << " without a usable file";
    if (integrity.unsupportedMediaCount > 0)
        out << ", " << integrity.unsupportedMediaCount << " of an unsupported type";
    out << "\n";
    out << "Files      " << verifiedFileCount(bundle) << " verified at level " << toString(level) << ", "
        << formatBytes(integrity.resolvedAssetBytes) << " of " << formatBytes(integrity.expectedAssetBytes)
        << " expected\n";
    if (integrity.expectedOriginalCount > 0) {
        out << "Originals  " << integrity.resolvedOriginalCount << " of " << integrity.expectedOriginalCount
            << " present\n";
    }

    const auto &reports = bundle.reports();
    if (reports.empty()) {
        out << "Reports    none\n";
    } else {
        out << "Reports    " << reports.size() << "\n";
        for (const BundleReport &report : reports)
            out << "  " << toString(report.code) << ": " << report.message << "\n";
    }

    out << "Play order " << toWire(bundle.playback.sort);
    if (bundle.playback.sort == BundleSort::random)
        out << ", seed " << bundle.playback.shuffleSeed.value_or(0);
    out << "\n";
    const qsizetype shown = std::min<qsizetype>(shownOrderEntries, qsizetype(playOrder.size()));
    for (qsizetype i = 0; i < shown; ++i) {
        const BundleMediaItem &item = *bundle.items[size_t(playOrder[size_t(i)])];
        const BundleResolvedAsset *asset = item.displayAsset();
        out << QStringLiteral("  %1. ").arg(i + 1, 3) << item.id << "  " << toRaw(item.mediaType);
        if (asset)
            out << "  " << asset->asset.path.value_or(QString());
        out << "\n";
    }
    if (qsizetype(playOrder.size()) > shown)
        out << "  ... and " << (qsizetype(playOrder.size()) - shown) << " more\n";
}

} // namespace sorvane::cli
