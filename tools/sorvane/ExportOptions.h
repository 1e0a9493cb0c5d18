#pragma once

#include "bundle/BundleWriteRequest.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace sorvane::cli {

enum class SourceKind { missing, file, folder };

// What parsing needs to know about the world, so that parsing itself stays a pure function.
struct ExportEnvironment {
    QString workingDirectory; // relative paths are resolved against it
    std::function<SourceKind(const QString &absolutePath)> kindOf; // what is at a path
    QString playerPlatform; // default of --player-platform
    QStringList playerPayloadCandidates; // where --with-player without a folder looks, in order

    // The real file system and current directory.
    static ExportEnvironment current();
};

// `sorvane export` as parsed: the request without its codec services, plus how to run it.
struct ExportOptions {
    BundleWriteRequest request;
    bool dryRun = false;
    bool quiet = false;
    bool verbose = false;
    bool help = false;
};

struct ExportParseResult {
    std::optional<ExportOptions> options;
    QString usageError; // set when options is absent

    bool ok() const { return options.has_value(); }
};

// Turns `sorvane export` arguments (without the command name) into a request.
ExportParseResult parseExportOptions(const QStringList &arguments, const ExportEnvironment &environment);

// The text of `sorvane export --help`.
const char *exportHelp();

} // namespace sorvane::cli
