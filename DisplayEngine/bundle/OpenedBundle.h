#pragma once

#include "bundle/BundleDisplayPreferences.h"
#include "bundle/BundleIntegrity.h"
#include "bundle/BundleManifest.h"
#include "bundle/BundleMediaItem.h"
#include "bundle/BundleOpenOptions.h"
#include "bundle/BundlePlaybackPreferences.h"
#include "bundle/BundleReport.h"
#include "bundle/OpenedBundleBranding.h"
#include "bundle/Pcg32.h"

#include <memory>
#include <vector>

namespace sorvane {

// A bundle that opened. Owned by whoever plays it; reports and the integrity
// record keep growing as files fail on screen. Main thread only.
class OpenedBundle {
public:
    BundleOpenOptions options;
    std::vector<BundleReport> mutableReports;
    QString rootPath;
    BundleManifest manifest;
    BundlePlaybackPreferences playback;
    BundleDisplayPreferences display;
    std::optional<OpenedBundleBranding> branding;
    std::vector<std::shared_ptr<BundleMediaItem>> items;
    std::shared_ptr<BundleIntegrity> integrity;

    QUrl rootURL() const { return QUrl::fromLocalFile(rootPath); }
    const std::vector<BundleReport> &reports() const { return mutableReports; }

    BundleMediaItem *item(const QString &itemId) const;

    // A file that passed the open failed to decode on screen: files the report,
    // retires the tier and returns the next usable file, if any.
    std::optional<QUrl> markUndecodable(const QString &itemId, const QString &tier);

    // Positions into `items` in play order, from the manifest's sort and seed. Computed
    // on the first call and kept: the engine, the walls and the image list all ask, and
    // the fallback report (a timestamp order that cannot be honoured) is filed once.
    const std::vector<qsizetype> &playOrder();

    // The playable items as media items, in play order.
    std::vector<ImageItem> imageItems();

    // The seeded generator for this bundle's reproducible draws.
    Pcg32 generator() const;

private:
    std::optional<std::vector<qsizetype>> m_playOrder;
};

} // namespace sorvane
