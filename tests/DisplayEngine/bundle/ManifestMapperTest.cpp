#include "bundle/BundleManifest.h"
#include "bundle/BundleManifestBuilder.h"
#include "bundle/BundleManifestMapper.h"
#include "bundle/BundleWireValues.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <vector>

using namespace sorvane;

namespace {

struct Mapped {
    BundlePlaybackPreferences playback;
    BundleDisplayPreferences display;
    OverlayCorner corner = OverlayCorner::topLeft;
    std::vector<BundleReport> reports;
};

// The reader's sequence: playback, then display, then the overlay corner, into one list.
Mapped mapAll(const QJsonObject &manifest)
{
    const BundleManifest m = BundleManifest::fromJson(manifest);
    Mapped out;
    out.playback = BundleManifestMapper::playback(m, out.reports);
    out.display = BundleManifestMapper::display(m, out.reports);
    out.corner = BundleManifestMapper::overlayCorner(m, out.reports);
    return out;
}

QJsonObject parse(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

// {"a": {"b": [{"c": value}]}} from the path "a.b[].c".
QJsonValue nested(const QStringList &path, const QJsonValue &value)
{
    if (path.isEmpty())
        return value;
    QString key = path.first();
    const bool inArray = key.endsWith("[]");
    key.chop(inArray ? 2 : 0);
    const QJsonValue inner = nested(path.mid(1), value);
    return QJsonObject {{key, inArray ? QJsonValue(QJsonArray {inner}) : inner}};
}

// The mapped preferences written back by the writer's side, read at `path`.
QJsonValue writtenBack(const Mapped &mapped, const QString &path)
{
    QJsonValue at
        = QJsonObject {{"playback", parse(BundleManifestBuilder::playback(mapped.playback).toJson().serialize())},
            {"display", parse(BundleManifestBuilder::display(mapped.display).toJson().serialize())},
            {"branding", QJsonObject {{"overlay", QJsonObject {{"corner", toWire(mapped.corner)}}}}}};
    for (QString key : path.split('.')) {
        const bool inArray = key.endsWith("[]");
        key.chop(inArray ? 2 : 0);
        at = inArray ? at[key][0] : at[key];
    }
    return at;
}

QString defaultReport(const QString &fieldPath, const QString &value, const char *defaultWire)
{
    return fieldPath + " held unrecognized value '" + value + "'; used '" + defaultWire + "'.";
}

// Every enumerated key with its wire values, the default first.
const struct EnumKey {
    const char *path;
    std::vector<const char *> values;
} enumKeys[] = {
    {"playback.mode", {"standard", "collage"}},
    {"playback.collage_layout", {"flow", "scatter", "varied"}},
    {"playback.sort", {"random", "sequential", "created", "modified"}},
    {"playback.image_scaling", {"fit_to_screen", "fill_screen", "actual_size"}},
    {"playback.background", {"black", "dark_gray"}},
    {"playback.image_filter", {"none", "black_and_white", "sepia", "vintage"}},
    {"playback.file_display_format", {"filename_only", "relative_path", "absolute_path", "parent_plus_filename"}},
    {"playback.flow.orientation", {"vertical", "horizontal"}},
    {"playback.flow.weight_mode", {"proportional", "weighted"}},
    {"display.preferred_control_scope", {"independent", "linked", "mirrored"}},
    {"display.preferred_sync_mode", {"synchronized", "phased"}},
    {"display.preferred_per_screen[].preferred_mode", {"standard", "collage"}},
    {"display.preferred_per_screen[].preferred_collage_layout", {"flow", "scatter", "varied"}},
    {"branding.overlay.corner", {"bottom_right", "top_left", "top_right", "bottom_left"}},
};

TEST(ManifestMapper, EveryKeyMapsItsWireValuesAndDefaultsTheRestWithOneReport)
{
    for (const EnumKey &key : enumKeys) {
        SCOPED_TRACE(key.path);
        const QStringList path = QString::fromLatin1(key.path).split('.');
        const QString fieldPath = QString::fromLatin1(key.path);
        const char *defaultWire = key.values.front();
        for (const char *wire : key.values) {
            const Mapped r = mapAll(nested(path, QString::fromLatin1(wire)).toObject());
            EXPECT_EQ(writtenBack(r, fieldPath), QJsonValue(wire));
            EXPECT_TRUE(r.reports.empty()) << wire;
        }
        // Absent, blank or not text: the default, silently.
        for (const QJsonValue &value : {QJsonValue(), QJsonValue(""), QJsonValue(" \t\n "), QJsonValue(1)}) {
            const Mapped r = mapAll(value.isUndefined() ? QJsonObject {} : nested(path, value).toObject());
            EXPECT_EQ(writtenBack(r, fieldPath), QJsonValue(defaultWire));
            EXPECT_TRUE(r.reports.empty());
        }
        // Compared exactly: no trimming or case folding, and the text appears literally.
        const QString other = QString::fromLatin1(key.values[1]);
        for (const QString &value : {other.toUpper(), " " + other, other + "\n", QStringLiteral("%2%1 ü")}) {
            const Mapped r = mapAll(nested(path, value).toObject());
            EXPECT_EQ(writtenBack(r, fieldPath), QJsonValue(defaultWire));
            ASSERT_EQ(r.reports.size(), 1u);
            const BundleReport &report = r.reports.front();
            EXPECT_EQ(report.code, BundleReportCode::unknownEnumValueDefaulted);
            EXPECT_EQ(report.message, defaultReport(fieldPath, value, defaultWire));
            EXPECT_EQ(report.fieldPath, fieldPath);
            EXPECT_EQ(report.unrecognizedValue, value);
            EXPECT_EQ(report.defaultUsed, defaultWire);
        }
    }
}

} // namespace
