#include "ExportOptions.h"

#include "PlayerPayloadLocation.h"
#include "bundle/BundleSort.h"
#include "bundle/BundleWireValues.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSysInfo>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <utility>
#include <vector>

namespace sorvane::cli {

namespace {

const char *const helpText = R"(Usage: sorvane export [options] SOURCE... --to DIR

Makes a slideshow bundle from photos and videos: a folder with resized copies
of every item and a bundle.json manifest, ready to copy to a USB stick, another
computer or a cloud drive and play there. Each SOURCE is a file or a folder;
folders are searched, subfolders included, for photos and videos.

Bundle:
  --to DIR                  Folder to make the bundle in (required; created
                            when missing).
  --name FOLDER             Name of the bundle folder (default sorvane.bundle).
                            When it is taken, "FOLDER 2", "FOLDER 3"... is used.
  --replace                 Replace a bundle folder of that name instead.
  --title TEXT              Title of the slideshow.
  --originals               Also copy the untouched source files.
  --no-videos               Leave videos out.
  --source-names            Record each item's source file name.
  --sha256                  Record every file's SHA-256, so that
                            'sorvane verify --level full' can check it.
  --no-readme               Do not write README.txt.
  --with-player [DIR]       Copy the player into the bundle, so that the bundle
                            plays with nothing installed: the payload built
                            beside this tool (target player_payload), or the
                            player application in DIR. DIR, when given, follows
                            directly (or write --with-player=DIR).
  --player-platform TEXT    Platform of that player (default: this computer's,
                            for example linux-x86_64).
  --player-entry FILE       File that starts the player (default Slidora).
  --player-version TEXT     Version of the player (default: this tool's).
  --player-reader-version N
                            Bundle reader version the player implements
                            (default 1).

Playback:
  --sort ORDER              random (default), sequential, created or modified.
  --seed N                  Seed of the random order (a 64-bit whole number):
                            the same seed plays in the same order everywhere.
  --interval SECONDS        How long each item stays on screen.
  --auto-advance, --no-auto-advance
                            Whether to advance on a timer.
  --loop, --no-loop         Whether to start again after the last item.
  --reshuffle-on-loop       Draw a new random order at each loop.
  --mode MODE               standard (default) or collage.
  --layout LAYOUT           Collage layout: flow (default), scatter or varied.
  --crossfade, --no-crossfade
                            Whether to cross-fade between items.
  --transition-seconds S    Length of the transition.
  --scaling MODE            fit_to_screen (default), fill_screen or actual_size.
  --background COLOUR       black (default) or dark_gray.
  --filter FILTER           none (default), black_and_white, sepia or vintage.
  --show-info, --no-show-info
                            Whether to show the file-name caption.
  --file-format FORMAT      Caption: filename_only (default), relative_path,
                            absolute_path or parent_plus_filename.
  --show-progress, --no-show-progress
                            Whether to show the progress indicator.

Flow wall (collage layout flow):
  --flow-orientation DIR    vertical (default) or horizontal.
  --flow-columns N          Columns more (or fewer) than the wall would choose,
                            -6 to 6.
  --flow-infinite, --no-flow-infinite
                            Whether the strips scroll endlessly.
  --flow-bidirectional      Neighbouring strips scroll in opposite directions.
  --flow-speed X            Scroll speed, 6 to 72 (normal is 18).
  --flow-auto-cycle, --no-flow-auto-cycle
                            Whether tiles are replaced while the strips scroll.
  --flow-tiles-per-change N
                            Tiles replaced at each change (1 or more).
  --flow-stagger, --no-flow-stagger
                            Whether those replacements are spread out in time.
  --flow-weight MODE        proportional (default) or weighted.

Screens:
  --screens N               Number of screens to play on.
  --control-scope SCOPE     independent (default), linked or mirrored.
  --sync MODE               synchronized (default) or phased.
  --phase-delay S           Seconds between phased screens, 0.1 to 5.
  --avoid-duplicates        Keep screens from showing the same item at once.
  --per-screen ORDINAL:MODE[:LAYOUT]
                            Mode (standard or collage) and collage layout of
                            one screen, 0 being the first; may be repeated,
                            for example --per-screen 1:collage:scatter.

Branding:
  --brand-name TEXT         Name of whoever made the bundle.
  --logo FILE               Logo image (stored as PNG).
  --brand-holding           Show the branding while nothing plays.
  --overlay                 Show the logo in a corner of every slide.
  --overlay-corner CORNER   bottom_right (default), top_left, top_right or
                            bottom_left.
  --overlay-size PERCENT    Size of the logo, 3 to 15 (default 6) percent of
                            the screen's shorter edge.
  --overlay-opacity X       Opacity of the logo, 0 to 1 (default 0.6).
  --overlay-margin PERCENT  Distance from the edges, 1 to 5 (default 2).

Running:
  --jobs N                  Sources encoded at once (default: one per core).
  --dry-run                 Only find the sources and print what would be
                            written, and how much; write nothing.
  --quiet                   No progress and no summary: print only the path of
                            the finished bundle. Errors are still printed.
  --verbose                 Also print the engine's log lines (for example why
                            a photo could not be read).
  -h, --help                Show this help.

A choice that is not given is written as its default; any other setting that
is not given is left for the player to choose.

Progress goes to standard error: a live bar on a terminal, plain lines
otherwise. Ctrl-C cancels the export and removes what it had written; a second
Ctrl-C stops at once, which may leave a hidden .bundle-staging folder in DIR.

Exit status:
  0    the bundle was written (with --dry-run: the sources were found)
  1    the export failed (the error's code and message are printed)
  2    the command was used wrongly
  130  the export was cancelled
)";

// "a, b or c".
QString listOfChoices(const QStringList &choices)
{
    if (choices.size() < 2)
        return choices.join(QString());
    return choices.mid(0, choices.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" or ") + choices.last();
}

template <typename E> std::vector<std::pair<E, QString>> wireChoices()
{
    std::vector<std::pair<E, QString>> choices;
    for (const auto &[value, text] : BundleWireTable<E>::entries)
        choices.emplace_back(value, QString(text));
    return choices;
}

template <> std::vector<std::pair<BundleSort, QString>> wireChoices<BundleSort>()
{
    std::vector<std::pair<BundleSort, QString>> choices;
    for (const BundleSort sort : allBundleSorts)
        choices.emplace_back(sort, toWire(sort));
    return choices;
}

template <typename E> std::optional<E> choiceFromText(const QString &text)
{
    for (const auto &[value, wire] : wireChoices<E>()) {
        if (wire == text)
            return value;
    }
    return std::nullopt;
}

template <typename E> QString choicesText()
{
    QStringList names;
    for (const auto &choice : wireChoices<E>())
        names << choice.second;
    return listOfChoices(names);
}

QString dashed(const QString &name)
{
    return QStringLiteral("--") + name;
}

// Reads options off a parsed command line, keeping the first problem found.
class OptionReader {
public:
    explicit OptionReader(const QCommandLineParser &parser) : m_parser(parser) { }

    const QString &error() const { return m_error; }
    bool failed() const { return !m_error.isEmpty(); }
    void fail(const QString &message)
    {
        if (m_error.isEmpty())
            m_error = message;
    }

    bool isSet(const char *name) const { return m_parser.isSet(QLatin1StringView(name)); }
    QString value(const char *name) const { return m_parser.value(QLatin1StringView(name)); }
    QStringList values(const char *name) const { return m_parser.values(QLatin1StringView(name)); }

    void text(const char *name, QString &target) const
    {
        if (isSet(name))
            target = value(name);
    }

    template <typename E> void choice(const char *name, E &target)
    {
        if (!isSet(name))
            return;
        const QString given = value(name);
        if (const auto parsed = choiceFromText<E>(given))
            target = *parsed;
        else
            fail(QStringLiteral("unknown value '%1' for --%2 (use %3).")
                     .arg(given, QLatin1StringView(name), choicesText<E>()));
    }

    // --NAME sets true, --no-NAME false, neither leaves the choice open.
    void flagPair(const char *name, std::optional<bool> &target)
    {
        const QString negative = QStringLiteral("no-") + QLatin1StringView(name);
        const bool yes = isSet(name);
        const bool no = m_parser.isSet(negative);
        if (yes && no)
            fail(QStringLiteral("--%1 and %2 contradict each other.").arg(QLatin1StringView(name), dashed(negative)));
        else if (yes || no)
            target = yes;
    }

    void flag(const char *name, std::optional<bool> &target) const
    {
        if (isSet(name))
            target = true;
    }

    // A finite number within [min, max]; `above` makes the minimum exclusive.
    std::optional<double> number(const char *name, double min, double max, bool above, const QString &what)
    {
        if (!isSet(name))
            return std::nullopt;
        const QString given = value(name);
        bool ok = false;
        const double parsed = given.toDouble(&ok);
        if (!ok || !std::isfinite(parsed) || parsed < min || parsed > max || (above && parsed == min)) {
            fail(QStringLiteral("invalid value '%1' for --%2 (use %3).").arg(given, QLatin1StringView(name), what));
            return std::nullopt;
        }
        return parsed;
    }

    void number(
        const char *name, double min, double max, bool above, const QString &what, std::optional<double> &target)
    {
        if (const auto parsed = number(name, min, max, above, what))
            target = parsed;
    }

    std::optional<qint64> integer(const char *name, qint64 min, qint64 max, const QString &what)
    {
        if (!isSet(name))
            return std::nullopt;
        const QString given = value(name);
        bool ok = false;
        const qint64 parsed = given.toLongLong(&ok);
        if (!ok || parsed < min || parsed > max) {
            fail(QStringLiteral("invalid value '%1' for --%2 (use %3).").arg(given, QLatin1StringView(name), what));
            return std::nullopt;
        }
        return parsed;
    }

    void integer(const char *name, qint64 min, qint64 max, const QString &what, std::optional<qint64> &target)
    {
        if (const auto parsed = integer(name, min, max, what))
            target = parsed;
    }

private:
    const QCommandLineParser &m_parser;
    QString m_error;
};

constexpr qint64 int64Min = std::numeric_limits<qint64>::min();
constexpr qint64 int64Max = std::numeric_limits<qint64>::max();
constexpr double unbounded = std::numeric_limits<double>::max();

// The options that take a value, each with the name of its value.
const std::pair<const char *, const char *> valueOptions[] = {
    {"to", "DIR"},
    {"title", "TEXT"},
    {"name", "FOLDER"},
    {"with-player", "DIR"},
    {"player-platform", "TEXT"},
    {"player-entry", "FILE"},
    {"player-version", "TEXT"},
    {"player-reader-version", "N"},
    {"sort", "ORDER"},
    {"seed", "N"},
    {"interval", "SECONDS"},
    {"mode", "MODE"},
    {"layout", "LAYOUT"},
    {"transition-seconds", "S"},
    {"scaling", "MODE"},
    {"background", "COLOUR"},
    {"filter", "FILTER"},
    {"file-format", "FORMAT"},
    {"flow-orientation", "DIR"},
    {"flow-columns", "N"},
    {"flow-speed", "X"},
    {"flow-tiles-per-change", "N"},
    {"flow-weight", "MODE"},
    {"screens", "N"},
    {"control-scope", "SCOPE"},
    {"sync", "MODE"},
    {"phase-delay", "S"},
    {"per-screen", "ORDINAL:MODE[:LAYOUT]"},
    {"brand-name", "TEXT"},
    {"logo", "FILE"},
    {"overlay-corner", "CORNER"},
    {"overlay-size", "PERCENT"},
    {"overlay-opacity", "X"},
    {"overlay-margin", "PERCENT"},
    {"jobs", "N"},
};

const char *const switchOptions[] = {
    "originals",
    "no-videos",
    "source-names",
    "sha256",
    "no-readme",
    "replace",
    "auto-advance",
    "no-auto-advance",
    "loop",
    "no-loop",
    "reshuffle-on-loop",
    "crossfade",
    "no-crossfade",
    "show-info",
    "no-show-info",
    "show-progress",
    "no-show-progress",
    "flow-infinite",
    "no-flow-infinite",
    "flow-bidirectional",
    "flow-auto-cycle",
    "no-flow-auto-cycle",
    "flow-stagger",
    "no-flow-stagger",
    "avoid-duplicates",
    "brand-holding",
    "overlay",
    "dry-run",
    "quiet",
    "verbose",
};

QString absolute(const ExportEnvironment &environment, const QString &path)
{
    return QDir::cleanPath(QDir(environment.workingDirectory).absoluteFilePath(path));
}

void readPerScreen(OptionReader &reader, BundleDisplayPreferences &display)
{
    std::set<qint64> ordinals;
    for (const QString &given : reader.values("per-screen")) {
        const QStringList parts = given.split(QLatin1Char(':'));
        bool ok = false;
        const qint64 ordinal = parts.first().toLongLong(&ok);
        if (parts.size() < 2 || parts.size() > 3 || !ok || ordinal < 0) {
            reader.fail(QStringLiteral("invalid value '%1' for --per-screen (use ORDINAL:MODE[:LAYOUT], for example "
                                       "1:collage:scatter, with 0 for the first screen).")
                            .arg(given));
            return;
        }
        const auto mode = choiceFromText<DisplayMode>(parts[1]);
        if (!mode) {
            reader.fail(QStringLiteral("unknown mode '%1' in --per-screen '%2' (use %3).")
                            .arg(parts[1], given, choicesText<DisplayMode>()));
            return;
        }
        BundlePerScreenPreference screen;
        screen.screenOrdinal = ordinal;
        screen.preferredMode = *mode;
        if (parts.size() == 3) {
            const auto layout = choiceFromText<CollageLayout>(parts[2]);
            if (!layout) {
                reader.fail(QStringLiteral("unknown layout '%1' in --per-screen '%2' (use %3).")
                                .arg(parts[2], given, choicesText<CollageLayout>()));
                return;
            }
            screen.preferredCollageLayout = *layout;
        }
        if (!ordinals.insert(ordinal).second) {
            reader.fail(QStringLiteral("--per-screen gives screen %1 more than once.").arg(ordinal));
            return;
        }
        display.preferredPerScreen.push_back(screen);
    }
}

void readPlayback(OptionReader &reader, BundlePlaybackPreferences &playback)
{
    reader.choice("sort", playback.sort);
    reader.integer("seed", int64Min, int64Max, QStringLiteral("a 64-bit whole number"), playback.shuffleSeed);
    reader.number(
        "interval", 0, unbounded, true, QStringLiteral("a number of seconds above 0"), playback.intervalSeconds);
    reader.flagPair("auto-advance", playback.autoAdvance);
    reader.flagPair("loop", playback.loop);
    reader.flag("reshuffle-on-loop", playback.reshuffleOnLoop);
    reader.choice("mode", playback.mode);
    reader.choice("layout", playback.collageLayout);
    reader.flagPair("crossfade", playback.crossfade);
    reader.number("transition-seconds", 0, unbounded, false, QStringLiteral("a number of seconds, 0 or more"),
        playback.transitionSeconds);
    reader.choice("scaling", playback.imageScaling);
    reader.choice("background", playback.background);
    reader.choice("filter", playback.imageFilter);
    reader.flagPair("show-info", playback.showImageInfo);
    reader.choice("file-format", playback.fileDisplayFormat);
    reader.flagPair("show-progress", playback.showProgress);

    // Ranges are those the flow wall itself keeps to.
    BundleFlowPreferences &flow = playback.flow;
    reader.choice("flow-orientation", flow.orientation);
    reader.integer("flow-columns", -6, 6, QStringLiteral("a whole number from -6 to 6"), flow.columnAdjustment);
    reader.flagPair("flow-infinite", flow.infiniteScroll);
    reader.flag("flow-bidirectional", flow.bidirectionalScroll);
    reader.number("flow-speed", 6, 72, false, QStringLiteral("a number from 6 to 72"), flow.scrollSpeed);
    reader.flagPair("flow-auto-cycle", flow.autoCycleTiles);
    reader.integer(
        "flow-tiles-per-change", 1, int64Max, QStringLiteral("a whole number, 1 or more"), flow.tilesPerChange);
    reader.flagPair("flow-stagger", flow.staggerSwaps);
    reader.choice("flow-weight", flow.weightMode);
}

void readDisplay(OptionReader &reader, BundleDisplayPreferences &display)
{
    reader.integer("screens", 1, int64Max, QStringLiteral("a whole number, 1 or more"), display.preferredScreenCount);
    reader.choice("control-scope", display.preferredControlScope);
    reader.choice("sync", display.preferredSyncMode);
    reader.number("phase-delay", 0.1, 5.0, false, QStringLiteral("a number of seconds from 0.1 to 5"),
        display.preferredPhaseDelaySeconds);
    reader.flag("avoid-duplicates", display.preferDuplicateAvoidance);
    readPerScreen(reader, display);
}

void readBranding(
    OptionReader &reader, const ExportEnvironment &environment, std::optional<BundleWriteBranding> &target)
{
    static const char *const brandingOptions[] = {"brand-name", "logo", "brand-holding", "overlay", "overlay-corner",
        "overlay-size", "overlay-opacity", "overlay-margin"};
    if (std::none_of(std::begin(brandingOptions), std::end(brandingOptions),
            [&](const char *name) { return reader.isSet(name); }))
        return;
    BundleWriteBranding branding;
    if (reader.isSet("brand-name"))
        branding.displayName = reader.value("brand-name");
    if (reader.isSet("logo")) {
        const QString logo = absolute(environment, reader.value("logo"));
        if (environment.kindOf(logo) != SourceKind::file)
            reader.fail(QStringLiteral("no such file for --logo: '%1'.").arg(reader.value("logo")));
        branding.logoFile = logo;
    }
    if (reader.isSet("brand-holding"))
        branding.holding = true;
    branding.overlayEnabled = reader.isSet("overlay");
    reader.choice("overlay-corner", branding.overlayCorner);
    // Ranges are those the overlay keeps to on screen.
    if (const auto size = reader.number("overlay-size", 3, 15, false, QStringLiteral("a percentage from 3 to 15")))
        branding.overlaySizePercent = *size;
    if (const auto opacity = reader.number("overlay-opacity", 0, 1, false, QStringLiteral("a number from 0 to 1")))
        branding.overlayOpacity = *opacity;
    if (const auto margin = reader.number("overlay-margin", 1, 5, false, QStringLiteral("a percentage from 1 to 5")))
        branding.overlayMarginPercent = *margin;
    target = branding;
}

void readPlayer(OptionReader &reader, const ExportEnvironment &environment, BundleWriteRequest &request)
{
    static const char *const playerOptions[]
        = {"player-platform", "player-entry", "player-version", "player-reader-version"};
    if (!reader.isSet("with-player")) {
        for (const char *name : playerOptions) {
            if (reader.isSet(name))
                reader.fail(QStringLiteral("--%1 needs --with-player.").arg(QLatin1StringView(name)));
        }
        return;
    }
    request.flavor = BundleFlavor::withPlayer;
    request.playerPlatform = environment.playerPlatform;
    request.playerEntryFileName = PlayerPayloadLocation::entryFileName();
    request.playerVersion = QStringLiteral(SORVANE_VERSION);
    reader.text("player-platform", request.playerPlatform);
    reader.text("player-entry", request.playerEntryFileName);
    const auto holdsEntry = [&](const QString &folder) {
        return environment.kindOf(folder + QLatin1Char('/') + request.playerEntryFileName) != SourceKind::missing;
    };

    const QString given = reader.value("with-player");
    if (given.isEmpty()) {
        const auto found = std::find_if(environment.playerPayloadCandidates.begin(),
            environment.playerPayloadCandidates.end(), [&](const QString &folder) {
                return environment.kindOf(folder) == SourceKind::folder && holdsEntry(folder);
            });
        if (found == environment.playerPayloadCandidates.end()) {
            reader.fail(QStringLiteral("the player payload is not built (looked in %1); build it with "
                                       "'cmake --build build --target player_payload', or name a player "
                                       "folder: --with-player DIR.")
                            .arg(environment.playerPayloadCandidates.join(QStringLiteral(", "))));
            return;
        }
        request.playerPayloadDirectory = *found;
    } else {
        const QString payload = absolute(environment, given);
        if (environment.kindOf(payload) != SourceKind::folder)
            reader.fail(QStringLiteral("no such folder for --with-player: '%1'.").arg(given));
        else if (!holdsEntry(payload))
            // Most often a source folder written right after --with-player.
            reader.fail(QStringLiteral("'%1' holds no player: there is no %2 in it (name the file that starts "
                                       "the player with --player-entry).")
                            .arg(given, request.playerEntryFileName));
        request.playerPayloadDirectory = payload;
    }
    reader.text("player-version", request.playerVersion);
    // 0 is accepted so that the writer, not the parser, refuses a player too old for the bundle.
    if (const auto version
        = reader.integer("player-reader-version", 0, int64Max, QStringLiteral("a whole number, 0 or more")))
        request.playerReaderCapabilityVersion = *version;
}

// --with-player takes a folder only when one follows it: at the end, or before another
// option, it stands alone and means the default payload.
QStringList withOptionalPlayerFolder(QStringList arguments)
{
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1StringView("--"))
            break;
        const bool alone = i + 1 == arguments.size() || arguments[i + 1].startsWith(QLatin1Char('-'));
        if ((arguments[i] == QLatin1StringView("--with-player") || arguments[i] == QLatin1StringView("-with-player"))
            && alone)
            arguments[i] = QStringLiteral("--with-player=");
    }
    return arguments;
}

} // namespace

ExportEnvironment ExportEnvironment::current()
{
    ExportEnvironment environment;
    environment.workingDirectory = QDir::currentPath();
    environment.kindOf = [](const QString &path) {
        const QFileInfo info(path);
        if (!info.exists())
            return SourceKind::missing;
        return info.isDir() ? SourceKind::folder : SourceKind::file;
    };
    environment.playerPlatform = QSysInfo::kernelType() + QLatin1Char('-') + QSysInfo::currentCpuArchitecture();
    environment.playerPayloadCandidates = PlayerPayloadLocation::candidates(QCoreApplication::applicationDirPath());
    return environment;
}

const char *exportHelp()
{
    return helpText;
}

ExportParseResult parseExportOptions(const QStringList &arguments, const ExportEnvironment &environment)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const auto &[name, valueName] : valueOptions)
        parser.addOption(QCommandLineOption(QLatin1StringView(name), QString(), QLatin1StringView(valueName)));
    for (const char *name : switchOptions)
        parser.addOption(QCommandLineOption(QLatin1StringView(name)));
    parser.addOption(QCommandLineOption(QStringList {QStringLiteral("h"), QStringLiteral("help")}));
    parser.addPositionalArgument(QStringLiteral("SOURCE"), QString());

    ExportParseResult result;
    if (!parser.parse(QStringList {QStringLiteral("sorvane export")} + withOptionalPlayerFolder(arguments))) {
        result.usageError = parser.errorText();
        return result;
    }
    ExportOptions options;
    if (parser.isSet(QStringLiteral("help"))) {
        options.help = true;
        result.options = options;
        return result;
    }

    OptionReader reader(parser);
    BundleWriteRequest &request = options.request;
    request.appName = QStringLiteral("sorvane");
    request.appVersion = QStringLiteral(SORVANE_VERSION);

    const QStringList sources = parser.positionalArguments();
    if (sources.isEmpty())
        reader.fail(QStringLiteral("no source given (name the photos, videos or folders to export)."));
    for (const QString &source : sources) {
        const QString path = absolute(environment, source);
        switch (environment.kindOf(path)) {
        case SourceKind::missing:
            reader.fail(QStringLiteral("no such file or folder: '%1'.").arg(source));
            break;
        case SourceKind::file:
            request.sourceFiles << path;
            break;
        case SourceKind::folder:
            request.sourceFolders << path;
            break;
        }
    }
    if (!reader.isSet("to") || reader.value("to").isEmpty())
        reader.fail(QStringLiteral("no destination given (use --to DIR)."));
    else
        request.destinationDirectory = absolute(environment, reader.value("to"));

    if (reader.isSet("name")) {
        const QString name = reader.value("name");
        if (name.trimmed().isEmpty() || name.contains(QLatin1Char('/')) || name == QLatin1StringView(".")
            || name == QLatin1StringView(".."))
            reader.fail(QStringLiteral("invalid value '%1' for --name (use a folder name, not a path).").arg(name));
        request.bundleFolderName = name;
    }
    reader.text("title", request.title);
    request.includeOriginals = reader.isSet("originals");
    request.includeVideos = !reader.isSet("no-videos");
    request.includeSourceNames = reader.isSet("source-names");
    request.emitSha256 = reader.isSet("sha256");
    request.writeReadme = !reader.isSet("no-readme");
    request.replaceExisting = reader.isSet("replace");
    readPlayer(reader, environment, request);
    readPlayback(reader, request.playback);
    readDisplay(reader, request.display);
    readBranding(reader, environment, request.branding);
    if (const auto jobs = reader.integer("jobs", 1, 4096, QStringLiteral("a whole number from 1 to 4096")))
        request.jobs = int(*jobs);
    options.dryRun = reader.isSet("dry-run");
    options.quiet = reader.isSet("quiet");
    options.verbose = reader.isSet("verbose");

    if (reader.failed()) {
        result.usageError = reader.error();
        return result;
    }
    result.options = options;
    return result;
}

} // namespace sorvane::cli
