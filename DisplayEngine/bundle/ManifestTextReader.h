#pragma once

#include "bundle/BundleManifest.h"

#include <QByteArray>
#include <QJsonParseError>

#include <optional>

namespace sorvane {

// Turns the bytes of `bundle.json` into a BundleManifest within bounded memory. Qt's parsed
// document costs up to fifty times its text (a 60 MB list of `[0]` takes 2.6 GB), so the
// text is first checked and outlined without building anything (JsonOutline). Then only
// the members the manifest reads are parsed, each entry of `items` on its own and dropped
// once its record is made; other members are only counted, and a member or entry holding
// more values than any real one does reads as null.
class ManifestTextReader {
public:
    struct Result {
        // Set when the text is a JSON object.
        std::optional<BundleManifest> manifest;
        // Anything but NoError: the text is not valid JSON.
        QJsonParseError error {0, QJsonParseError::NoError};
        // Entries in `items` when there are more than BundleFormat::maxItems; none are read then.
        std::optional<qsizetype> itemsOverLimit;
    };

    static Result read(const QByteArray &text);
};

} // namespace sorvane
