#pragma once

#include "bundle/BundleJSON.h"
#include "bundle/BundleOpenOptions.h"
#include "bundle/BundleOpenResult.h"

#include <QString>
#include <QTextStream>
#include <vector>

namespace sorvane::cli {

// What `sorvane verify` prints about one open, for a person or as JSON.
struct VerifyOutput {
    QString argument;
    BundleVerification level;
    const BundleOpenResult &result;
    std::vector<qsizetype> playOrder;

    // How many play-order entries the text lists before summarising the rest.
    static constexpr qsizetype shownOrderEntries = 10;

    // Written as it goes: a bundle of many items has many report lines.
    void writeText(QTextStream &out) const;
    // The whole result as one JSON object, written as it is built: a bundle of
    // hundreds of thousands of items never exists as one tree or one string.
    void writeJson(QTextStream &out) const;
};

QString toString(BundleVerification level);

} // namespace sorvane::cli
