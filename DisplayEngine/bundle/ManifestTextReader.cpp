#include "bundle/ManifestTextReader.h"

#include "bundle/BundleFormat.h"
#include "bundle/JsonOutline.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <thread>

namespace sorvane {

namespace {

// Far more values than any real member or item holds (a thousand players, say); at most
// this many are ever parsed at once per member, which bounds the parsed document.
constexpr qsizetype maxValuesPerMember = 16384;

const QLatin1StringView itemsName("items");

void appendMember(QByteArray &top, const QByteArray &text, QLatin1StringView name, const JsonOutline::Span &span)
{
    if (top.size() > 1)
        top += ',';
    if (span.values > maxValuesPerMember)
        top += '"' + QByteArray(name.data(), name.size()) + "\":null";
    else
        top.append(text.constData() + span.begin, span.end - span.begin);
}

BundleItem parseEntry(const QByteArray &text, const JsonOutline::Span &entry)
{
    // An entry that is not an object, or too large to be an item, has no members (and so no id).
    if (entry.values > maxValuesPerMember)
        return BundleItem::fromJson(QJsonObject());
    QByteArray wrapped;
    wrapped.reserve(entry.end - entry.begin + 2);
    wrapped.append('[').append(text.constData() + entry.begin, entry.end - entry.begin).append(']');
    return BundleItem::fromJson(QJsonDocument::fromJson(wrapped).array().at(0).toObject());
}

std::vector<BundleItem> parseEntries(const QByteArray &text, const std::vector<JsonOutline::Span> &entries)
{
    std::vector<BundleItem> items(entries.size());
    auto parseRange = [&](size_t from, size_t to) {
        for (size_t i = from; i < to; ++i)
            items[i] = parseEntry(text, entries[i]);
    };
    // Large lists are read in two halves at once.
    constexpr size_t parallelFrom = 2000;
    if (entries.size() >= parallelFrom && QThread::idealThreadCount() > 1) {
        const size_t half = entries.size() / 2;
        std::thread second(parseRange, half, entries.size());
        parseRange(0, half);
        second.join();
    } else {
        parseRange(0, entries.size());
    }
    return items;
}

} // namespace

ManifestTextReader::Result ManifestTextReader::read(const QByteArray &text)
{
    Result result;
    const JsonOutline outline = JsonOutline::of(text, BundleManifest::memberNames, itemsName, BundleFormat::maxItems);
    result.error = outline.error;
    if (outline.error.error != QJsonParseError::NoError || !outline.isObject)
        return result;

    // The members the manifest reads, each small, as a document of their own; the list
    // stands in it as an empty array.
    QByteArray top = "{";
    for (const JsonOutline::Member &member : outline.members)
        appendMember(top, text, member.name, member.span);
    if (outline.hasList && outline.listIsArray)
        top += QByteArray(top.size() > 1 ? "," : "") + "\"items\":[]";
    else if (outline.hasList)
        appendMember(top, text, itemsName, outline.list);
    top += '}';
    QJsonObject object = QJsonDocument::fromJson(top).object();
    BundleManifest manifest = BundleManifest::takeFromJson(object);
    manifest.unknownMemberCount += int(std::min<qsizetype>(outline.otherMembers, std::numeric_limits<int>::max()));

    if (outline.listIsArray) {
        if (outline.entryCount > BundleFormat::maxItems)
            result.itemsOverLimit = outline.entryCount;
        else
            manifest.items = parseEntries(text, outline.entries);
    }
    result.manifest = std::move(manifest);
    return result;
}

} // namespace sorvane
