#include "ExportOptions.h"

#include "bundle/BundleSort.h"
#include "bundle/BundleWireValues.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace sorvane::cli {
namespace {

// A small imaginary file system under /work, the working directory.
ExportEnvironment fakeEnvironment()
{
    ExportEnvironment environment;
    environment.workingDirectory = QStringLiteral("/work");
    environment.kindOf = [](const QString &path) {
        static const QStringList folders {"/work/photos", "/media/in", "/work/payload", "/work/payload/Sorvane.app",
            "/opt/sorvane/lib/sorvane/player"};
        static const QStringList files {"/work/a.jpg", "/work/b.mov", "/work/logo.png", "/work/payload/Slidora",
            "/opt/sorvane/lib/sorvane/player/Slidora"};
        if (folders.contains(path))
            return SourceKind::folder;
        return files.contains(path) ? SourceKind::file : SourceKind::missing;
    };
    environment.playerPlatform = QStringLiteral("testos-arm64");
    // The build tree's payload is not built here; the installed one is.
    environment.playerPayloadCandidates = {"/opt/sorvane/payload", "/opt/sorvane/lib/sorvane/player"};
    return environment;
}

const QStringList minimal {"a.jpg", "--to", "out"};

ExportParseResult parse(const QStringList &arguments, const ExportEnvironment &environment = fakeEnvironment())
{
    return parseExportOptions(arguments, environment);
}

// The request's own fields, one "name=value" line each, so a failure shows the differing
// lines; the playback and display preferences are compared whole.
std::string describe(const BundleWriteRequest &r)
{
    const auto flag = [](bool value) { return QString::number(int(value)); };
    const auto optional = [](const std::optional<QString> &value) { return value.value_or("<absent>"); };
    QStringList lines {"sourceFiles=" + r.sourceFiles.join(','), "sourceFolders=" + r.sourceFolders.join(','),
        "destinationDirectory=" + r.destinationDirectory, "bundleFolderName=" + r.bundleFolderName, "title=" + r.title,
        "flavor=" + toWire(r.flavor), "includeOriginals=" + flag(r.includeOriginals),
        "includeVideos=" + flag(r.includeVideos), "includeSourceNames=" + flag(r.includeSourceNames),
        "emitSha256=" + flag(r.emitSha256), "writeReadme=" + flag(r.writeReadme),
        "replaceExisting=" + flag(r.replaceExisting), "jobs=" + QString::number(r.jobs),
        "playerPayloadDirectory=" + optional(r.playerPayloadDirectory), "playerPlatform=" + r.playerPlatform,
        "playerEntryFileName=" + r.playerEntryFileName, "playerVersion=" + r.playerVersion,
        "playerReaderCapabilityVersion=" + QString::number(r.playerReaderCapabilityVersion),
        "app=" + r.appName + " " + r.appVersion};
    if (const auto &b = r.branding) {
        lines << "branding.displayName=" + optional(b->displayName) << "branding.logoFile=" + optional(b->logoFile)
              << "branding.holding=" + (b->holding ? flag(*b->holding) : "<absent>")
              << "branding.overlay=" + flag(b->overlayEnabled) + " " + toWire(b->overlayCorner)
                + QStringLiteral(" %1 %2 %3")
                      .arg(b->overlaySizePercent)
                      .arg(b->overlayOpacity)
                      .arg(b->overlayMarginPercent);
    }
    return lines.join('\n').toStdString();
}

using R = BundleWriteRequest;

// What --with-player sets when only the payload folder is chosen.
void withPlayerFrom(R &r, const QString &folder)
{
    r.flavor = BundleFlavor::withPlayer;
    r.playerPayloadDirectory = folder;
    r.playerPlatform = "testos-arm64";
    r.playerEntryFileName = "Slidora";
    r.playerVersion = SORVANE_VERSION;
}

// Any branding option brings the branding record, with its defaults, into the request.
std::function<void(R &)> brand(void (*set)(BundleWriteBranding &))
{
    return [set](R &r) { set(r.branding.emplace()); };
}

// Options after the minimal command line: the one change each makes to the minimal request
// (nothing else may move), or the usage error it gives.
struct OptionCase {
    QStringList arguments;
    std::function<void(R &)> change;
    const char *error = nullptr;
};

TEST(ExportOptions, EachOptionSetsItsOwnFieldOrNamesTheMistake)
{
    const OptionCase cases[] = {
        {{"--title", "Summer 2024"}, [](R &r) { r.title = "Summer 2024"; }},
        {{"--name", "Trip"}, [](R &r) { r.bundleFolderName = "Trip"; }},
        {{"--originals"}, [](R &r) { r.includeOriginals = true; }},
        {{"--no-videos"}, [](R &r) { r.includeVideos = false; }},
        {{"--sha256"}, [](R &r) { r.emitSha256 = true; }},
        {{"--replace"}, [](R &r) { r.replaceExisting = true; }},
        {{"--jobs", "3"}, [](R &r) { r.jobs = 3; }},
        {{"--with-player", "payload"}, [](R &r) { withPlayerFrom(r, "/work/payload"); }},
        // Without a folder: the first candidate that holds a player.
        {{"--with-player", "--sha256"},
            [](R &r) {
                withPlayerFrom(r, "/opt/sorvane/lib/sorvane/player");
                r.emitSha256 = true;
            }},
        {{"--with-player", "/work/payload", "--player-platform", "macos-arm64", "--player-entry", "Sorvane.app",
             "--player-version", "2.1", "--player-reader-version", "0"},
            [](R &r) {
                withPlayerFrom(r, "/work/payload");
                r.playerPlatform = "macos-arm64";
                r.playerEntryFileName = "Sorvane.app";
                r.playerVersion = "2.1";
                r.playerReaderCapabilityVersion = 0;
            }},
        {{"--seed", "-9223372036854775808"}, [](R &r) { r.playback.shuffleSeed = std::numeric_limits<qint64>::min(); }},
        {{"--interval", "7.5"}, [](R &r) { r.playback.intervalSeconds = 7.5; }},
        {{"--auto-advance"}, [](R &r) { r.playback.autoAdvance = true; }},
        {{"--no-loop"}, [](R &r) { r.playback.loop = false; }},
        {{"--no-crossfade"}, [](R &r) { r.playback.crossfade = false; }},
        {{"--transition-seconds", "0"}, [](R &r) { r.playback.transitionSeconds = 0.0; }},
        {{"--no-show-progress"}, [](R &r) { r.playback.showProgress = false; }},
        {{"--flow-columns", "-6"}, [](R &r) { r.playback.flow.columnAdjustment = -6; }},
        {{"--flow-speed", "36"}, [](R &r) { r.playback.flow.scrollSpeed = 36.0; }},
        {{"--flow-tiles-per-change", "3"}, [](R &r) { r.playback.flow.tilesPerChange = 3; }},
        {{"--screens", "3"}, [](R &r) { r.display.preferredScreenCount = 3; }},
        {{"--phase-delay", "0.1"}, [](R &r) { r.display.preferredPhaseDelaySeconds = 0.1; }},
        {{"--avoid-duplicates"}, [](R &r) { r.display.preferDuplicateAvoidance = true; }},
        {{"--per-screen", "1:collage:scatter", "--per-screen", "0:standard"},
            [](R &r) {
                r.display.preferredPerScreen = {
                    {1, DisplayMode::collage, CollageLayout::scatter}, {0, DisplayMode::standard, CollageLayout::flow}};
            }},
        // Choices take exactly the manifest's wire values.
        {{"--sort", "created"}, [](R &r) { r.playback.sort = BundleSort::created; }},
        {{"--mode", "collage"}, [](R &r) { r.playback.mode = DisplayMode::collage; }},
        {{"--layout", "varied"}, [](R &r) { r.playback.collageLayout = CollageLayout::collage; }},
        {{"--flow-orientation", "horizontal"}, [](R &r) { r.playback.flow.orientation = FlowOrientation::horizontal; }},
        {{"--sync", "phased"}, [](R &r) { r.display.preferredSyncMode = SyncMode::phased; }},
        {{"--brand-name", "Studio Nord"}, brand([](auto &b) { b.displayName = "Studio Nord"; })},
        {{"--logo", "logo.png"}, brand([](auto &b) { b.logoFile = "/work/logo.png"; })},
        {{"--brand-holding"}, brand([](auto &b) { b.holding = true; })},
        {{"--overlay", "--overlay-corner", "top_left"}, brand([](auto &b) {
             b.overlayEnabled = true;
             b.overlayCorner = OverlayCorner::topLeft;
         })},
        {{"--overlay-size", "15", "--overlay-opacity", "0", "--overlay-margin", "1"}, brand([](auto &b) {
             b.overlaySizePercent = 15;
             b.overlayOpacity = 0;
             b.overlayMarginPercent = 1;
         })},

        // Unknown choices name the option and every allowed value, the default first.
        {{"--mode", "slides"}, {}, "unknown value 'slides' for --mode (use standard or collage)."},
        // The stored settings' word for the Varied wall is no manifest word.
        {{"--layout", "collage"}, {}, "unknown value 'collage' for --layout (use flow, scatter or varied)."},
        {{"--overlay-corner", "center"}, {},
            "for --overlay-corner (use bottom_right, top_left, top_right or bottom_left)."},
        // Bad numbers name the option and the range.
        {{"--interval", "0"}, {}, "invalid value '0' for --interval (use a number of seconds above 0)."},
        {{"--interval", "nan"}, {}, "invalid value 'nan' for --interval"},
        {{"--transition-seconds", "-0.5"}, {}, "invalid value '-0.5' for --transition-seconds"},
        {{"--seed", "1.5"}, {}, "invalid value '1.5' for --seed (use a 64-bit whole number)."},
        {{"--flow-columns", "7"}, {}, "invalid value '7' for --flow-columns (use a whole number from -6 to 6)."},
        {{"--flow-speed", "5.9"}, {}, "invalid value '5.9' for --flow-speed (use a number from 6 to 72)."},
        {{"--screens", "two"}, {}, "invalid value 'two' for --screens (use a whole number, 1 or more)."},
        {{"--phase-delay", "0.05"}, {},
            "invalid value '0.05' for --phase-delay (use a number of seconds from 0.1 to 5)."},
        {{"--overlay-size", "2"}, {}, "invalid value '2' for --overlay-size (use a percentage from 3 to 15)."},
        {{"--jobs", "0"}, {}, "invalid value '0' for --jobs"},
        {{"--with-player", "payload", "--player-reader-version", "-1"}, {},
            "invalid value '-1' for --player-reader-version"},
        // Other mistakes.
        {{"--per-screen", "1"}, {}, "invalid value '1' for --per-screen (use ORDINAL:MODE[:LAYOUT]"},
        {{"--per-screen", "1:collage:flow:x"}, {}, "invalid value '1:collage:flow:x' for --per-screen"},
        {{"--per-screen", "1:grid"}, {}, "unknown mode 'grid' in --per-screen '1:grid' (use standard or collage)."},
        {{"--per-screen", "1:collage:grid"}, {},
            "unknown layout 'grid' in --per-screen '1:collage:grid' (use flow, scatter or varied)."},
        {{"--per-screen", "1:collage", "--per-screen", "1:standard"}, {},
            "--per-screen gives screen 1 more than once."},
        {{"--loop", "--no-loop"}, {}, "--loop and --no-loop contradict each other."},
        {{"--player-platform", "macos"}, {}, "--player-platform needs --with-player."},
        {{"--with-player", "missing"}, {}, "no such folder for --with-player: 'missing'."},
        {{"--with-player", "photos"}, {},
            "'photos' holds no player: there is no Slidora in it (name the file that starts the player with "
            "--player-entry)."},
        {{"--with-player", "payload", "--player-entry", "SorvanePlayer"}, {},
            "'payload' holds no player: there is no SorvanePlayer in it"},
        {{"--logo", "missing.png"}, {}, "no such file for --logo: 'missing.png'."},
        {{"--name", "a/b"}, {}, "invalid value 'a/b' for --name (use a folder name, not a path)."},
        {{"--colour"}, {}, "Unknown option 'colour'."},
        {{"--interval"}, {}, "Missing value after '--interval'."},
    };
    for (const OptionCase &c : cases) {
        SCOPED_TRACE(c.arguments.join(' ').toStdString());
        const ExportParseResult result = parse(minimal + c.arguments);
        if (c.error) {
            EXPECT_FALSE(result.ok());
            EXPECT_TRUE(result.usageError.contains(QString::fromUtf8(c.error))) << result.usageError.toStdString();
            continue;
        }
        ASSERT_TRUE(result.ok()) << result.usageError.toStdString();
        R expected;
        expected.sourceFiles = QStringList {"/work/a.jpg"};
        expected.destinationDirectory = QStringLiteral("/work/out");
        expected.appName = QStringLiteral("sorvane");
        expected.appVersion = QStringLiteral(SORVANE_VERSION);
        c.change(expected);
        const R &actual = result.options->request;
        EXPECT_EQ(describe(actual), describe(expected));
        EXPECT_EQ(actual.playback, expected.playback);
        EXPECT_EQ(actual.display, expected.display);
        EXPECT_FALSE(actual.derivativeEncoder || actual.videoSource);
    }
}

TEST(ExportOptions, SourcesAreSortedIntoFilesAndFoldersAndEachIsNeeded)
{
    const ExportParseResult result = parse(
        {"photos", "a.jpg", "/media/in", "./b.mov", "--to", "../elsewhere/out", "--dry-run", "--quiet", "--verbose"});
    ASSERT_TRUE(result.ok()) << result.usageError.toStdString();
    const R &request = result.options->request;
    EXPECT_EQ(request.sourceFiles, (QStringList {"/work/a.jpg", "/work/b.mov"}));
    EXPECT_EQ(request.sourceFolders, (QStringList {"/work/photos", "/media/in"}));
    EXPECT_EQ(request.destinationDirectory, "/elsewhere/out");
    EXPECT_TRUE(result.options->dryRun && result.options->quiet && result.options->verbose);

    const std::pair<QStringList, const char *> missing[] = {
        {{"--to", "out"}, "no source given"},
        {{"a.jpg"}, "no destination given (use --to DIR)."},
        {{"nope.jpg", "--to", "out"}, "no such file or folder: 'nope.jpg'."},
    };
    for (const auto &[arguments, message] : missing)
        EXPECT_TRUE(parse(arguments).usageError.contains(QString::fromUtf8(message))) << message;

    // --with-player alone needs a payload built where it looks.
    ExportEnvironment environment = fakeEnvironment();
    environment.playerPayloadCandidates = {"/opt/build/payload", "/work/photos"};
    EXPECT_EQ(parse(minimal + QStringList {"--with-player", "--", "b.mov"}, environment).usageError.toStdString(),
        "the player payload is not built (looked in /opt/build/payload, /work/photos); build it with "
        "'cmake --build build --target player_payload', or name a player folder: --with-player DIR.");
}

} // namespace
} // namespace sorvane::cli
