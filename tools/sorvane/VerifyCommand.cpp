#include "VerifyCommand.h"

#include "CommandLine.h"
#include "VerifyOutput.h"

#include "bundle/BundleReader.h"
#include "codecs/VipsAssetProbe.h"

#include <QCommandLineParser>

namespace sorvane::cli {

namespace {

const char *const verifyHelp = R"(Usage: sorvane verify [options] PATH

Opens the slideshow bundle at PATH (a bundle folder or its bundle.json) the way
the player does, and checks every file the manifest lists.

Options:
  --level LEVEL  How deeply each file is checked:
                   size    it exists and has the size the manifest gives (default)
                   decode  also, every photo decodes
                   full    also, every file's SHA-256 matches the manifest
  --json         Print the whole result as one JSON object: error, reports,
                 integrity, items with their verified tiers, and play order.
  --verbose      Also print the engine's log lines (for example why a photo
                 does not decode).
  -h, --help     Show this help.

A bundle that opens may still carry reports: files that are missing, short or
undecodable, settings this player does not know. They are listed, and the
bundle plays without them.

Exit status:
  0  the bundle opened
  1  the bundle could not be opened (the error's code and message are printed)
  2  the command was used wrongly
)";

std::optional<BundleVerification> parseLevel(const QString &text)
{
    if (text == QLatin1StringView("size") || text == QLatin1StringView("sizeAndCount"))
        return BundleVerification::sizeAndCount;
    if (text == QLatin1StringView("decode"))
        return BundleVerification::decode;
    if (text == QLatin1StringView("full"))
        return BundleVerification::full;
    return std::nullopt;
}

int usageError(QTextStream &err, const QString &message)
{
    err << "sorvane verify: " << message << "\n"
        << "Run 'sorvane verify --help' for usage.\n";
    return exitUsage;
}

} // namespace

int runVerify(const QStringList &arguments, QTextStream &out, QTextStream &err)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption levelOption(
        QStringLiteral("level"), QString(), QStringLiteral("level"), QStringLiteral("size"));
    const QCommandLineOption jsonOption(QStringLiteral("json"));
    const QCommandLineOption verboseOption(QStringLiteral("verbose"));
    const QCommandLineOption helpOption(QStringList {QStringLiteral("h"), QStringLiteral("help")});
    parser.addOptions({levelOption, jsonOption, verboseOption, helpOption});
    parser.addPositionalArgument(QStringLiteral("PATH"), QString());

    if (!parser.parse(QStringList {QStringLiteral("sorvane verify")} + arguments))
        return usageError(err, parser.errorText());
    if (parser.isSet(helpOption)) {
        out << verifyHelp;
        return exitOk;
    }
    const QStringList paths = parser.positionalArguments();
    if (paths.isEmpty())
        return usageError(err, QStringLiteral("no bundle given."));
    if (paths.size() > 1)
        return usageError(err, QStringLiteral("one bundle at a time (got %1 paths).").arg(paths.size()));
    const auto level = parseLevel(parser.value(levelOption));
    if (!level) {
        return usageError(
            err, QStringLiteral("unknown level '%1' (use size, decode or full).").arg(parser.value(levelOption)));
    }
    configureLogging(parser.isSet(verboseOption));

    BundleOpenOptions options;
    options.verification = *level;
    if (*level != BundleVerification::sizeAndCount)
        options.assetProbe = std::make_shared<VipsAssetProbe>();
    const BundleOpenResult result = BundleReader::open(paths.first(), options);
    // The play order can add a report of its own, so it is computed before printing.
    std::vector<qsizetype> order;
    if (result.bundle)
        order = result.bundle->playOrder();

    const VerifyOutput output {paths.first(), *level, result, order};
    if (parser.isSet(jsonOption))
        output.writeJson(out);
    else if (result.ok())
        output.writeText(out);
    else
        output.writeText(err);
    return result.ok() ? exitOk : exitFailed;
}

} // namespace sorvane::cli
