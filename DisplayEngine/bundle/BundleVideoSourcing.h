#pragma once

#include "bundle/BundleRasterImage.h"

#include <QString>
#include <optional>

namespace sorvane {

// Where a video's poster frame came from.
enum class BundlePosterOutcome { firstAttempt, fallback, unavailable };

struct BundleVideoInspection {
    std::optional<BundleRasterImage> poster; // long edge at most 2160 pixels
    double durationSeconds = 0; // 0 when unknown
    int width = 0;
    int height = 0;
    QString container; // e.g. "mp4", "mov", "matroska"
    QString videoCodec; // e.g. "h264", "hevc", "vp9"
    std::optional<QString> audioCodec;
    bool hasAudio = false;
    BundlePosterOutcome posterOutcome = BundlePosterOutcome::unavailable;
    // Set when the file could not be opened as a video at all.
    std::optional<QString> error;
};

// Inspects videos and takes their poster frames. Called from several threads
// at once, so implementations must be thread-safe.
class BundleVideoSourcing {
public:
    virtual ~BundleVideoSourcing() = default;
    // Poster at half the duration (0.5 s when the duration is unknown), else at 0.5 s.
    virtual BundleVideoInspection inspect(const QString &video) const = 0;
};

} // namespace sorvane
