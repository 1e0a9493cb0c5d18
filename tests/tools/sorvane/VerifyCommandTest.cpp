#include "support/BundleFixture.h"

#include "CliTestSupport.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using test::BundleFixture;

using test::CommandCase;
using test::expectCommandOutcomes;
using test::Outcome;
using test::sorvane;

QJsonObject parseJson(const QString &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << qPrintable(text);
    return document.object();
}

TEST(VerifyCommand, AnErrorExitsOneNamedOnStandardErrorOrInTheJson)
{
    QTemporaryDir empty;
    const Outcome text = sorvane({"verify", empty.path()});
    EXPECT_EQ(text.status, 1);
    EXPECT_TRUE(text.out.isEmpty());
    EXPECT_TRUE(text.err.contains("notABundle: No bundle.json at this path.")) << qPrintable(text.err);
    EXPECT_TRUE(text.err.contains(empty.path()));

    BundleFixture fixture;
    fixture.manifest.minReaderVersion = 4;
    fixture.writeManifest();
    const Outcome result = sorvane({"verify", "--json", fixture.manifestPath()});
    EXPECT_EQ(result.status, 1);
    const QJsonObject json = parseJson(result.out);
    EXPECT_FALSE(json["opened"].toBool());
    const QJsonObject error = json["error"].toObject();
    const QJsonObject expected {{"code", "unsupportedFutureVersion"},
        {"message", "Bundle requires reader version 4; this reader is version 1."},
        {"jsonPath", "$.min_reader_version"}, {"requiredReaderVersion", 4}, {"supportedReaderVersion", 1}};
    for (auto it = expected.begin(); it != expected.end(); ++it)
        EXPECT_EQ(error[it.key()], it.value()) << qPrintable(it.key());
    EXPECT_TRUE(json["playOrder"].toArray().isEmpty());
}

TEST(VerifyCommand, JsonListsReportsMissingItemsTiersAndPlayOrder)
{
    BundleFixture fixture;
    fixture.addItem("a", {{"tile", 10}, {"full", 20}});
    fixture.addItem("b", {{"full", 20}});
    fixture.addItem("c", {{"full", 20}});
    QFile::remove(fixture.path("media/full/b.bin"));
    fixture.manifest.playback = BundlePlaybackJSON {};
    fixture.manifest.playback->sort = "sequential";
    fixture.manifest.playback->background = "plaid";
    fixture.writeManifest();

    const Outcome result = sorvane({"verify", "--json", fixture.root()});
    ASSERT_EQ(result.status, 0) << qPrintable(result.err);
    const QJsonObject json = parseJson(result.out);
    const QJsonArray reports = json["reports"].toArray();
    ASSERT_EQ(reports.size(), 2);
    const QJsonObject enumReport = reports[0].toObject();
    EXPECT_EQ(enumReport["fieldPath"].toString(), "playback.background");
    EXPECT_EQ(enumReport["unrecognizedValue"].toString(), "plaid");
    EXPECT_EQ(enumReport["defaultUsed"].toString(), "black");
    EXPECT_EQ(reports[1].toObject()["assetPath"].toString(), "media/full/b.bin");
    EXPECT_EQ(reports[1].toObject()["itemId"].toString(), "b");

    const QJsonArray missing = json["integrity"].toObject()["missingItems"].toArray();
    ASSERT_EQ(missing.size(), 1);
    EXPECT_EQ(missing[0].toObject()["reason"].toString(), "itemAssetMissing");

    const QJsonArray items = json["items"].toArray();
    ASSERT_EQ(items.size(), 2);
    const QJsonObject tiers = items[0].toObject()["tiers"].toObject();
    EXPECT_EQ(tiers.keys(), (QStringList {"full", "tile"}));
    EXPECT_EQ(tiers["tile"].toObject()["bytes"].toInteger(), 10);
    EXPECT_EQ(items[1].toObject()["mediaType"].toString(), "image");
    EXPECT_EQ(json["playOrder"].toArray(), (QJsonArray {"a", "c"}));
}

TEST(VerifyCommand, UsageErrorsExitTwoAndHelpExitsZero)
{
    const CommandCase cases[] = {
        {{}, 2, "Usage: sorvane <command>"},
        {{"frobnicate"}, 2, "unknown command 'frobnicate'"},
        {{"verify"}, 2, "no bundle given"},
        {{"verify", "a", "b"}, 2, "one bundle at a time"},
        {{"verify", "--level", "deep", "x"}, 2, "unknown level 'deep'"},
        {{"verify", "--colour", "x"}, 2, "Unknown option 'colour'"},
        {{"verify", "--help"}, 0, "Exit status:"},
    };
    expectCommandOutcomes(cases);
}

} // namespace
} // namespace sorvane
