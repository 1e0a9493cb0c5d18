#pragma once

#include <QString>
#include <QStringList>

namespace sorvane {

// Constants of the bundle format, shared by the reader and the writer.
namespace BundleFormat {
inline const QString formatName = QStringLiteral("sorvane.bundle");
inline const QString manifestFileName = QStringLiteral("bundle.json");
inline constexpr int formatVersionWritten = 2;
inline constexpr int minReaderVersionWritten = 1;
inline constexpr int readerVersion = 1;

inline const QString tierTile = QStringLiteral("tile");
inline const QString tierFull = QStringLiteral("full");
inline const QString tierAnimated = QStringLiteral("animated");
inline const QString tierVideo = QStringLiteral("video");
inline const QString tierOriginal = QStringLiteral("original");
inline const QStringList tierNames {tierTile, tierFull, tierAnimated, tierVideo, tierOriginal};

inline constexpr int tileLongEdge = 1200;
inline constexpr int fullLongEdge = 2160;

inline const QString readmeFileName = QStringLiteral("README.txt");
inline const QString mediaDir = QStringLiteral("media");
inline const QString animatedDir = QStringLiteral("media/animated");
inline const QString videoDir = QStringLiteral("media/video");
inline const QString originalsDir = QStringLiteral("originals");
inline const QString playerDir = QStringLiteral("player");
inline const QString brandingDir = QStringLiteral("assets/branding");
inline const QString logoPath = QStringLiteral("assets/branding/logo.png");

// A manifest larger than this, or listing more items, is refused before its items are
// read. Real manifests take under 1 KB per item, so this is about 40,000 photos; the bounds
// keep the records and reports of a hostile manifest within memory (they cost several
// times its text).
inline constexpr qint64 maxManifestBytes = 32LL * 1024 * 1024;
inline constexpr qint64 maxItems = 250000;
// Larger than any photo or video a stick carries; a file beyond it is not hashed (a
// sparse terabyte would keep a full check busy for many minutes).
inline constexpr qint64 maxHashedAssetBytes = 32LL * 1024 * 1024 * 1024;
} // namespace BundleFormat

} // namespace sorvane
