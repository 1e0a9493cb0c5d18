#pragma once

#include "bundle/BundleDerivativeEncoding.h"
#include "bundle/BundleDisplayPreferences.h"
#include "bundle/BundleFlavor.h"
#include "bundle/BundlePlaybackPreferences.h"
#include "bundle/BundleVideoSourcing.h"
#include "bundle/BundleWriteBranding.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace sorvane {

// Everything an export needs. Paths are local file paths.
struct BundleWriteRequest {
    QStringList sourceFiles;
    QStringList sourceFolders;
    QString destinationDirectory;
    QString bundleFolderName; // empty: "sorvane.bundle"
    QString title;
    BundleFlavor flavor = BundleFlavor::mediaOnly;
    bool includeOriginals = false;
    bool includeVideos = true;
    bool includeSourceNames = false;
    bool emitSha256 = false;
    bool writeReadme = true;
    BundlePlaybackPreferences playback;
    BundleDisplayPreferences display;
    std::optional<BundleWriteBranding> branding;
    std::optional<QString> playerPayloadDirectory;
    QString playerPlatform;
    QString playerEntryFileName;
    QString playerVersion;
    qint64 playerReaderCapabilityVersion = 1;
    std::shared_ptr<const BundleDerivativeEncoding> derivativeEncoder;
    std::shared_ptr<const BundleVideoSourcing> videoSource;
    QString appName;
    QString appVersion;

    // The caller's intent to replace a same-named bundle instead of choosing "N 2".
    bool replaceExisting = false;
    // Sources encoded at once; 0 uses every core. The bundle is the same whatever it is.
    int jobs = 0;
};

} // namespace sorvane
