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

std::string str(const QString &text)
{
    return text.toStdString();
}
// Compared as one text so that a failure shows the differing lines.
std::string str(const QStringList &lines)
{
    return lines.join('\n').toStdString();
}

const QStringList minimal {"a.jpg", "--to", "out"};

ExportParseResult parse(const QStringList &arguments)
{
    return parseExportOptions(arguments, fakeEnvironment());
}

QString text(const std::optional<bool> &value)
{
    return value ? QString(*value ? "true" : "false") : QStringLiteral("absent");
}
QString text(const std::optional<qint64> &value)
{
    return value ? QString::number(*value) : QStringLiteral("absent");
}
QString text(const std::optional<double> &value)
{
    return value ? QString::number(*value, 'g', 17) : QStringLiteral("absent");
}
QString text(const std::optional<QString> &value)
{
    return value ? QLatin1Char('"') + *value + QLatin1Char('"') : QStringLiteral("absent");
}
QString text(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

// Every field of a request, one "name=value" line each, enumerations by their wire values:
// comparing two of these shows exactly which fields differ.
QStringList describe(const BundleWriteRequest &r)
{
    const BundlePlaybackPreferences &p = r.playback;
    const BundleFlowPreferences &f = p.flow;
    const BundleDisplayPreferences &d = r.display;
    QStringList lines {
        "sourceFiles=" + r.sourceFiles.join(','),
        "sourceFolders=" + r.sourceFolders.join(','),
        "destinationDirectory=" + r.destinationDirectory,
        "bundleFolderName=" + r.bundleFolderName,
        "title=" + r.title,
        "flavor=" + toWire(r.flavor),
        "includeOriginals=" + text(r.includeOriginals),
        "includeVideos=" + text(r.includeVideos),
        "includeSourceNames=" + text(r.includeSourceNames),
        "emitSha256=" + text(r.emitSha256),
        "writeReadme=" + text(r.writeReadme),
        "replaceExisting=" + text(r.replaceExisting),
        "jobs=" + QString::number(r.jobs),
        "playerPayloadDirectory=" + text(r.playerPayloadDirectory),
        "playerPlatform=" + r.playerPlatform,
        "playerEntryFileName=" + r.playerEntryFileName,
        "playerVersion=" + r.playerVersion,
        "playerReaderCapabilityVersion=" + QString::number(r.playerReaderCapabilityVersion),
        "appName=" + r.appName,
        "appVersion=" + r.appVersion,
        "playback.mode=" + toWire(p.mode),
        "playback.collageLayout=" + toWire(p.collageLayout),
        "playback.intervalSeconds=" + text(p.intervalSeconds),
        "playback.autoAdvance=" + text(p.autoAdvance),
        "playback.loop=" + text(p.loop),
        "playback.reshuffleOnLoop=" + text(p.reshuffleOnLoop),
        "playback.sort=" + toWire(p.sort),
        "playback.shuffleSeed=" + text(p.shuffleSeed),
        "playback.crossfade=" + text(p.crossfade),
        "playback.transitionSeconds=" + text(p.transitionSeconds),
        "playback.imageScaling=" + toWire(p.imageScaling),
        "playback.background=" + toWire(p.background),
        "playback.imageFilter=" + toWire(p.imageFilter),
        "playback.showImageInfo=" + text(p.showImageInfo),
        "playback.fileDisplayFormat=" + toWire(p.fileDisplayFormat),
        "playback.showProgress=" + text(p.showProgress),
        "flow.orientation=" + toWire(f.orientation),
        "flow.columnAdjustment=" + text(f.columnAdjustment),
        "flow.infiniteScroll=" + text(f.infiniteScroll),
        "flow.bidirectionalScroll=" + text(f.bidirectionalScroll),
        "flow.scrollSpeed=" + text(f.scrollSpeed),
        "flow.autoCycleTiles=" + text(f.autoCycleTiles),
        "flow.tilesPerChange=" + text(f.tilesPerChange),
        "flow.staggerSwaps=" + text(f.staggerSwaps),
        "flow.weightMode=" + toWire(f.weightMode),
        "display.preferredScreenCount=" + text(d.preferredScreenCount),
        "display.preferredControlScope=" + toWire(d.preferredControlScope),
        "display.preferredSyncMode=" + toWire(d.preferredSyncMode),
        "display.preferredPhaseDelaySeconds=" + text(d.preferredPhaseDelaySeconds),
        "display.preferDuplicateAvoidance=" + text(d.preferDuplicateAvoidance),
    };
    for (const BundlePerScreenPreference &screen : d.preferredPerScreen) {
        lines << "display.preferredPerScreen[]=" + text(screen.screenOrdinal) + ":" + toWire(screen.preferredMode) + ":"
                + toWire(screen.preferredCollageLayout);
    }
    if (!r.branding) {
        lines << "branding=absent";
    } else {
        const BundleWriteBranding &b = *r.branding;
        lines << "branding.displayName=" + text(b.displayName) << "branding.logoFile=" + text(b.logoFile)
              << "branding.holding=" + text(b.holding) << "branding.overlayEnabled=" + text(b.overlayEnabled)
              << "branding.overlayCorner=" + toWire(b.overlayCorner)
              << "branding.overlaySizePercent=" + QString::number(b.overlaySizePercent)
              << "branding.overlayOpacity=" + QString::number(b.overlayOpacity)
              << "branding.overlayMarginPercent=" + QString::number(b.overlayMarginPercent);
    }
    lines << QString("derivativeEncoder=") + (r.derivativeEncoder ? "set" : "absent");
    lines << QString("videoSource=") + (r.videoSource ? "set" : "absent");
    return lines;
}

// The request the minimal command line gives, built by hand.
BundleWriteRequest minimalRequest()
{
    BundleWriteRequest request;
    request.sourceFiles = QStringList {"/work/a.jpg"};
    request.destinationDirectory = QStringLiteral("/work/out");
    request.appName = QStringLiteral("sorvane");
    request.appVersion = QStringLiteral(SORVANE_VERSION);
    return request;
}

struct OptionCase {
    QStringList arguments; // after the minimal ones
    std::function<void(BundleWriteRequest &)> expect;
};

// What --with-player sets when only the payload folder is chosen.
void withPlayerFrom(BundleWriteRequest &r, const QString &folder)
{
    r.flavor = BundleFlavor::withPlayer;
    r.playerPayloadDirectory = folder;
    r.playerPlatform = "testos-arm64";
    r.playerEntryFileName = "Slidora";
    r.playerVersion = SORVANE_VERSION;
}

TEST(ExportOptions, EachOptionSetsItsOwnFieldAndNothingElse)
{
    using R = BundleWriteRequest;
    // Any branding option brings the branding record, with its defaults, into the request.
    const auto brand = [](void (*set)(BundleWriteBranding &)) {
        return [set](R &r) {
            r.branding = BundleWriteBranding {};
            set(*r.branding);
        };
    };
    const OptionCase cases[] = {
        {{"--title", "Summer 2024"}, [](R &r) { r.title = "Summer 2024"; }},
        {{"--name", "Trip"}, [](R &r) { r.bundleFolderName = "Trip"; }},
        {{"--originals"}, [](R &r) { r.includeOriginals = true; }},
        {{"--no-videos"}, [](R &r) { r.includeVideos = false; }},
        {{"--source-names"}, [](R &r) { r.includeSourceNames = true; }},
        {{"--sha256"}, [](R &r) { r.emitSha256 = true; }},
        {{"--no-readme"}, [](R &r) { r.writeReadme = false; }},
        {{"--replace"}, [](R &r) { r.replaceExisting = true; }},
        {{"--jobs", "3"}, [](R &r) { r.jobs = 3; }},
        {{"--with-player", "payload"}, [](R &r) { withPlayerFrom(r, "/work/payload"); }},
        // Without a folder: the first candidate that holds a player.
        {{"--with-player"}, [](R &r) { withPlayerFrom(r, "/opt/sorvane/lib/sorvane/player"); }},
        {{"--with-player", "--sha256"},
            [](R &r) {
                withPlayerFrom(r, "/opt/sorvane/lib/sorvane/player");
                r.emitSha256 = true;
            }},
        {{"--with-player", "/work/payload", "--player-platform", "macos-arm64", "--player-entry", "Sorvane.app",
             "--player-version", "2.1", "--player-reader-version", "0"},
            [](R &r) {
                r.flavor = BundleFlavor::withPlayer;
                r.playerPayloadDirectory = "/work/payload";
                r.playerPlatform = "macos-arm64";
                r.playerEntryFileName = "Sorvane.app";
                r.playerVersion = "2.1";
                r.playerReaderCapabilityVersion = 0;
            }},
        {{"--seed", "18"}, [](R &r) { r.playback.shuffleSeed = 18; }},
        {{"--seed", "-9223372036854775808"}, [](R &r) { r.playback.shuffleSeed = std::numeric_limits<qint64>::min(); }},
        {{"--interval", "7.5"}, [](R &r) { r.playback.intervalSeconds = 7.5; }},
        {{"--auto-advance"}, [](R &r) { r.playback.autoAdvance = true; }},
        {{"--no-auto-advance"}, [](R &r) { r.playback.autoAdvance = false; }},
        {{"--loop"}, [](R &r) { r.playback.loop = true; }},
        {{"--no-loop"}, [](R &r) { r.playback.loop = false; }},
        {{"--reshuffle-on-loop"}, [](R &r) { r.playback.reshuffleOnLoop = true; }},
        {{"--crossfade"}, [](R &r) { r.playback.crossfade = true; }},
        {{"--no-crossfade"}, [](R &r) { r.playback.crossfade = false; }},
        {{"--transition-seconds", "0"}, [](R &r) { r.playback.transitionSeconds = 0.0; }},
        {{"--show-info"}, [](R &r) { r.playback.showImageInfo = true; }},
        {{"--no-show-info"}, [](R &r) { r.playback.showImageInfo = false; }},
        {{"--show-progress"}, [](R &r) { r.playback.showProgress = true; }},
        {{"--no-show-progress"}, [](R &r) { r.playback.showProgress = false; }},
        {{"--flow-columns", "-6"}, [](R &r) { r.playback.flow.columnAdjustment = -6; }},
        {{"--flow-infinite"}, [](R &r) { r.playback.flow.infiniteScroll = true; }},
        {{"--no-flow-infinite"}, [](R &r) { r.playback.flow.infiniteScroll = false; }},
        {{"--flow-bidirectional"}, [](R &r) { r.playback.flow.bidirectionalScroll = true; }},
        {{"--flow-speed", "36"}, [](R &r) { r.playback.flow.scrollSpeed = 36.0; }},
        {{"--flow-auto-cycle"}, [](R &r) { r.playback.flow.autoCycleTiles = true; }},
        {{"--no-flow-auto-cycle"}, [](R &r) { r.playback.flow.autoCycleTiles = false; }},
        {{"--flow-tiles-per-change", "3"}, [](R &r) { r.playback.flow.tilesPerChange = 3; }},
        {{"--flow-stagger"}, [](R &r) { r.playback.flow.staggerSwaps = true; }},
        {{"--no-flow-stagger"}, [](R &r) { r.playback.flow.staggerSwaps = false; }},
        {{"--screens", "3"}, [](R &r) { r.display.preferredScreenCount = 3; }},
        {{"--phase-delay", "0.1"}, [](R &r) { r.display.preferredPhaseDelaySeconds = 0.1; }},
        {{"--avoid-duplicates"}, [](R &r) { r.display.preferDuplicateAvoidance = true; }},
        {{"--per-screen", "1:collage:scatter", "--per-screen", "0:standard"},
            [](R &r) {
                r.display.preferredPerScreen = {
                    {1, DisplayMode::collage, CollageLayout::scatter}, {0, DisplayMode::standard, CollageLayout::flow}};
            }},
        {{"--brand-name", "Studio Nord"}, brand([](auto &b) { b.displayName = "Studio Nord"; })},
        {{"--logo", "logo.png"}, brand([](auto &b) { b.logoFile = "/work/logo.png"; })},
        {{"--brand-holding"}, brand([](auto &b) { b.holding = true; })},
        {{"--overlay"}, brand([](auto &b) { b.overlayEnabled = true; })},
        {{"--overlay-size", "15", "--overlay-opacity", "0", "--overlay-margin", "1"}, brand([](auto &b) {
             b.overlaySizePercent = 15;
             b.overlayOpacity = 0;
             b.overlayMarginPercent = 1;
         })},
    };
    for (const OptionCase &c : cases) {
        const ExportParseResult result = parse(minimal + c.arguments);
        ASSERT_TRUE(result.ok()) << qPrintable(c.arguments.join(' ')) << ": " << qPrintable(result.usageError);
        BundleWriteRequest expected = minimalRequest();
        c.expect(expected);
        EXPECT_EQ(str(describe(result.options->request)), str(describe(expected))) << qPrintable(c.arguments.join(' '));
    }
}

TEST(ExportOptions, EveryWireValueOfEveryChoiceSetsOnlyItsField)
{
    struct ChoiceCase {
        const char *option;
        const char *field;
        QStringList values; // as the manifest writes them
    };
    const ChoiceCase cases[] = {
        {"--sort", "playback.sort", {"random", "sequential", "created", "modified"}},
        {"--mode", "playback.mode", {"standard", "collage"}},
        {"--layout", "playback.collageLayout", {"flow", "scatter", "varied"}},
        {"--scaling", "playback.imageScaling", {"fit_to_screen", "fill_screen", "actual_size"}},
        {"--background", "playback.background", {"black", "dark_gray"}},
        {"--filter", "playback.imageFilter", {"none", "black_and_white", "sepia", "vintage"}},
        {"--file-format", "playback.fileDisplayFormat",
            {"filename_only", "relative_path", "absolute_path", "parent_plus_filename"}},
        {"--flow-orientation", "flow.orientation", {"vertical", "horizontal"}},
        {"--flow-weight", "flow.weightMode", {"proportional", "weighted"}},
        {"--control-scope", "display.preferredControlScope", {"independent", "linked", "mirrored"}},
        {"--sync", "display.preferredSyncMode", {"synchronized", "phased"}},
        {"--overlay-corner", "branding.overlayCorner", {"top_left", "top_right", "bottom_left", "bottom_right"}},
    };
    const QStringList defaults = describe(minimalRequest());
    for (const ChoiceCase &c : cases) {
        for (const QString &value : c.values) {
            const ExportParseResult result = parse(minimal + QStringList {c.option, value});
            ASSERT_TRUE(result.ok()) << c.option << " " << qPrintable(value) << ": " << qPrintable(result.usageError);
            // The choice's own line holds the value and no other line moves (the overlay corner
            // brings the branding lines with it).
            const QString line = QString::fromUtf8(c.field) + "=" + value;
            const QStringList lines = describe(result.options->request);
            EXPECT_TRUE(lines.contains(line)) << qPrintable(line);
            if (!line.startsWith("branding.")) {
                for (qsizetype i = 0; i < lines.size(); ++i) {
                    if (!lines[i].startsWith(QString::fromUtf8(c.field) + "="))
                        EXPECT_EQ(str(lines[i]), str(defaults.value(i))) << c.option << " " << qPrintable(value);
                }
            }
        }
    }
}

TEST(ExportOptions, SourcesAreSortedIntoFilesAndFoldersInOrder)
{
    const ExportParseResult result = parse(
        {"photos", "a.jpg", "/media/in", "./b.mov", "--to", "../elsewhere/out", "--dry-run", "--quiet", "--verbose"});
    ASSERT_TRUE(result.ok()) << qPrintable(result.usageError);
    const BundleWriteRequest &request = result.options->request;
    EXPECT_EQ(str(request.sourceFiles), "/work/a.jpg\n/work/b.mov");
    EXPECT_EQ(str(request.sourceFolders), "/work/photos\n/media/in");
    EXPECT_EQ(str(request.destinationDirectory), "/elsewhere/out");
    EXPECT_TRUE(result.options->dryRun);
    EXPECT_TRUE(result.options->quiet);
    EXPECT_TRUE(result.options->verbose);
}

struct BadCase {
    QStringList arguments;
    const char *message;
};

void expectUsageErrors(const std::vector<BadCase> &cases, const QStringList &prefix)
{
    for (const BadCase &c : cases) {
        const ExportParseResult result = parse(prefix + c.arguments);
        EXPECT_FALSE(result.ok()) << qPrintable(c.arguments.join(' '));
        EXPECT_TRUE(result.usageError.contains(QString::fromUtf8(c.message)))
            << qPrintable(c.arguments.join(' ')) << "\n  got:  " << qPrintable(result.usageError)
            << "\n  want: " << c.message;
    }
}

TEST(ExportOptions, UnknownChoicesNameTheOptionAndTheAllowedValues)
{
    expectUsageErrors(
        {
            {{"--mode", "slides"}, "unknown value 'slides' for --mode (use standard or collage)."},
            {{"--layout", "grid"}, "unknown value 'grid' for --layout (use flow, scatter or varied)."},
            {{"--sort", "Random"}, "unknown value 'Random' for --sort (use random, sequential, created or modified)."},
            {{"--scaling", "fit"}, "for --scaling (use fit_to_screen, fill_screen or actual_size)."},
            {{"--background", "white"}, "unknown value 'white' for --background (use black or dark_gray)."},
            {{"--filter", "noir"}, "for --filter (use none, black_and_white, sepia or vintage)."},
            {{"--file-format", "name"},
                "for --file-format (use filename_only, relative_path, absolute_path or parent_plus_filename)."},
            {{"--flow-orientation", "diagonal"}, "for --flow-orientation (use vertical or horizontal)."},
            {{"--flow-weight", "equal"}, "for --flow-weight (use proportional or weighted)."},
            {{"--control-scope", "global"}, "for --control-scope (use independent, linked or mirrored)."},
            {{"--sync", "async"}, "for --sync (use synchronized or phased)."},
            {{"--overlay-corner", "center"},
                "for --overlay-corner (use bottom_right, top_left, top_right or "
                "bottom_left)."},
            {{"--mode", " collage"}, "unknown value ' collage' for --mode"},
        },
        minimal);
}

TEST(ExportOptions, BadNumbersNameTheOptionAndTheRange)
{
    expectUsageErrors(
        {
            {{"--interval", "0"}, "invalid value '0' for --interval (use a number of seconds above 0)."},
            {{"--interval", "abc"}, "invalid value 'abc' for --interval"},
            {{"--interval", "nan"}, "invalid value 'nan' for --interval"},
            {{"--interval", "inf"}, "invalid value 'inf' for --interval"},
            {{"--transition-seconds", "-0.5"}, "invalid value '-0.5' for --transition-seconds"},
            {{"--seed", "1.5"}, "invalid value '1.5' for --seed (use a 64-bit whole number)."},
            {{"--seed", "9223372036854775808"}, "invalid value '9223372036854775808' for --seed"},
            {{"--flow-columns", "7"}, "invalid value '7' for --flow-columns (use a whole number from -6 to 6)."},
            {{"--flow-columns", "-7"}, "invalid value '-7' for --flow-columns"},
            {{"--flow-speed", "5.9"}, "invalid value '5.9' for --flow-speed (use a number from 6 to 72)."},
            {{"--flow-speed", "73"}, "invalid value '73' for --flow-speed"},
            {{"--flow-tiles-per-change", "0"}, "invalid value '0' for --flow-tiles-per-change"},
            {{"--screens", "0"}, "invalid value '0' for --screens (use a whole number, 1 or more)."},
            {{"--screens", "two"}, "invalid value 'two' for --screens"},
            {{"--phase-delay", "0.05"},
                "invalid value '0.05' for --phase-delay (use a number of seconds from 0.1 "
                "to 5)."},
            {{"--overlay-size", "2"}, "invalid value '2' for --overlay-size (use a percentage from 3 to 15)."},
            {{"--overlay-opacity", "1.5"}, "invalid value '1.5' for --overlay-opacity (use a number from 0 to 1)."},
            {{"--overlay-margin", "6"}, "invalid value '6' for --overlay-margin (use a percentage from 1 to 5)."},
            {{"--jobs", "0"}, "invalid value '0' for --jobs"},
            {{"--with-player", "payload", "--player-reader-version", "-1"},
                "invalid value '-1' for --player-reader-version"},
        },
        minimal);
}

TEST(ExportOptions, WithPlayerAloneNeedsABuiltPayload)
{
    ExportEnvironment environment = fakeEnvironment();
    environment.playerPayloadCandidates = {"/opt/build/payload", "/work/photos"};
    for (const QStringList &arguments : {QStringList {"--with-player"}, QStringList {"--with-player", "--", "b.mov"}}) {
        const ExportParseResult result = parseExportOptions(minimal + arguments, environment);
        ASSERT_FALSE(result.ok()) << str(arguments);
        EXPECT_EQ(str(result.usageError),
            "the player payload is not built (looked in /opt/build/payload, /work/photos); build it with "
            "'cmake --build build --target player_payload', or name a player folder: --with-player DIR.");
    }
}

TEST(ExportOptions, OtherMistakesAreUsageErrors)
{
    expectUsageErrors(
        {
            {{"--per-screen", "1"}, "invalid value '1' for --per-screen (use ORDINAL:MODE[:LAYOUT]"},
            {{"--per-screen", "x:standard"}, "invalid value 'x:standard' for --per-screen"},
            {{"--per-screen", "-1:standard"}, "invalid value '-1:standard' for --per-screen"},
            {{"--per-screen", "1:collage:flow:x"}, "invalid value '1:collage:flow:x' for --per-screen"},
            {{"--per-screen", "1:grid"}, "unknown mode 'grid' in --per-screen '1:grid' (use standard or collage)."},
            {{"--per-screen", "1:collage:grid"},
                "unknown layout 'grid' in --per-screen '1:collage:grid' (use flow, scatter or varied)."},
            {{"--per-screen", "1:collage", "--per-screen", "1:standard"},
                "--per-screen gives screen 1 more than once."},
            {{"--loop", "--no-loop"}, "--loop and --no-loop contradict each other."},
            {{"--no-crossfade", "--crossfade"}, "--crossfade and --no-crossfade contradict each other."},
            {{"--flow-stagger", "--no-flow-stagger"}, "--flow-stagger and --no-flow-stagger contradict"},
            {{"--player-platform", "macos"}, "--player-platform needs --with-player."},
            {{"--player-reader-version", "1"}, "--player-reader-version needs --with-player."},
            {{"--with-player", "missing"}, "no such folder for --with-player: 'missing'."},
            {{"--with-player", "a.jpg"}, "no such folder for --with-player: 'a.jpg'."},
            {{"--with-player", "photos"},
                "'photos' holds no player: there is no Slidora in it (name the file that starts the player with "
                "--player-entry)."},
            {{"--with-player", "payload", "--player-entry", "SorvanePlayer"},
                "'payload' holds no player: there is no SorvanePlayer in it"},
            {{"--logo", "missing.png"}, "no such file for --logo: 'missing.png'."},
            {{"--name", "a/b"}, "invalid value 'a/b' for --name (use a folder name, not a path)."},
            {{"--name", ".."}, "invalid value '..' for --name"},
            {{"--colour"}, "Unknown option 'colour'."},
            {{"--interval"}, "Missing value after '--interval'."},
        },
        minimal);
    expectUsageErrors(
        {
            {{}, "no source given"},
            {{"--to", "out"}, "no source given"},
            {{"a.jpg"}, "no destination given (use --to DIR)."},
            {{"a.jpg", "--to", ""}, "no destination given"},
            {{"nope.jpg", "--to", "out"}, "no such file or folder: 'nope.jpg'."},
        },
        {});
}

} // namespace
} // namespace sorvane::cli
