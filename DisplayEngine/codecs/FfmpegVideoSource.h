#pragma once

#include "bundle/BundleVideoSourcing.h"

#include <QtGlobal>

namespace sorvane {

// Inspects videos and takes their poster frames with the FFmpeg libraries.
// Every call opens its own demuxer, decoder and scaler, so calls for different
// files may run on any number of threads at once.
class FfmpegVideoSource final : public BundleVideoSourcing {
public:
    // Frames larger than this on either side, or in total, are refused so that a
    // hostile file cannot make the decoder allocate gigabytes.
    static constexpr int maxSide = 16384;
    static constexpr qint64 maxPixels = qint64(16384) * 8192;
    // Posters are made no larger than the largest derivative tier.
    static constexpr int posterLongEdge = 2160;
    // A decoded frame up to this far from the requested time counts as the frame there.
    static constexpr double posterToleranceSeconds = 0.5;
    // Reading per attempt is bounded so that a corrupt file cannot keep the decoder busy:
    // enough video packets to cross a ten-second keyframe interval at 60 frames per
    // second, and a generous number of packets of any stream.
    static constexpr int maxVideoPacketsPerAttempt = 600;
    static constexpr int maxPacketsPerAttempt = 3000;
    // Bounds on what stream discovery may read before the first frame.
    static constexpr qint64 probeBytes = qint64(16) << 20;
    static constexpr qint64 analyzeMicroseconds = qint64(10) * 1000 * 1000;

    BundleVideoInspection inspect(const QString &video) const override;
};

} // namespace sorvane
