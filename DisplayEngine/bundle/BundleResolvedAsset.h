#pragma once

#include "bundle/BundleAsset.h"

#include <QString>
#include <QUrl>

namespace sorvane {

// A tier's file that passed verification at open time.
struct BundleResolvedAsset {
    QString key; // the tier name
    BundleAsset asset;
    QString absolutePath;

    QUrl url() const { return QUrl::fromLocalFile(absolutePath); }
    bool operator==(const BundleResolvedAsset &) const = default;
};

} // namespace sorvane
