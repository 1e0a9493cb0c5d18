#include "CommandLine.h"

#include "ExportCommand.h"
#include "VerifyCommand.h"

#include <QLoggingCategory>

namespace sorvane::cli {

namespace {

const char *const topLevelHelp = R"(Usage: sorvane <command> [options]

Makes and checks Sorvane slideshow bundles: folders of photos and videos,
with a bundle.json manifest, that play anywhere.

Commands:
  export    Make a bundle from photos, videos and folders of them.
  verify    Open a bundle and check its manifest and files.

Run 'sorvane <command> --help' for the options of a command.
)";

} // namespace

void configureLogging(bool verbose)
{
    QLoggingCategory::setFilterRules(
        verbose ? QStringLiteral("sorvane.*=true") : QStringLiteral("sorvane.*.debug=false\nsorvane.*.info=false"));
}

int run(const QStringList &arguments, QTextStream &out, QTextStream &err)
{
    if (arguments.isEmpty()) {
        err << topLevelHelp;
        return exitUsage;
    }
    const QString command = arguments.first();
    if (command == QLatin1StringView("--help") || command == QLatin1StringView("-h")
        || command == QLatin1StringView("help")) {
        out << topLevelHelp;
        return exitOk;
    }
    if (command == QLatin1StringView("--version")) {
        out << "sorvane " << SORVANE_VERSION << "\n";
        return exitOk;
    }
    if (command == QLatin1StringView("export"))
        return runExport(arguments.mid(1), out, err);
    if (command == QLatin1StringView("verify"))
        return runVerify(arguments.mid(1), out, err);
    err << "sorvane: unknown command '" << command << "'.\n"
        << "Run 'sorvane --help' for the list of commands.\n";
    return exitUsage;
}

} // namespace sorvane::cli
