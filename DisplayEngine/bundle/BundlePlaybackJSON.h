#pragma once

#include "bundle/BundleJSON.h"

#include <QJsonObject>
#include <QString>
#include <optional>

namespace sorvane {

// `playback.flow`: settings of the flow collage wall (unknown members not counted).
struct BundleFlowJSON {
    std::optional<QString> orientation;
    std::optional<qint64> columnAdjustment;
    std::optional<bool> infiniteScroll;
    std::optional<bool> bidirectionalScroll;
    std::optional<double> scrollSpeed;
    std::optional<bool> autoCycleTiles;
    std::optional<qint64> tilesPerChange;
    std::optional<bool> staggerSwaps;
    std::optional<QString> weightMode;

    static BundleFlowJSON fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundleFlowJSON &) const = default;
};

// `playback`: the bundle author's suggested playback settings.
struct BundlePlaybackJSON {
    std::optional<QString> mode;
    std::optional<QString> collageLayout;
    std::optional<double> intervalSeconds;
    std::optional<bool> autoAdvance;
    std::optional<bool> loop;
    std::optional<bool> reshuffleOnLoop;
    std::optional<QString> sort;
    std::optional<qint64> shuffleSeed;
    std::optional<bool> crossfade;
    std::optional<double> transitionSeconds;
    std::optional<QString> imageScaling;
    std::optional<QString> background;
    std::optional<QString> imageFilter;
    std::optional<bool> showImageInfo;
    std::optional<QString> fileDisplayFormat;
    std::optional<bool> showProgress;
    std::optional<BundleFlowJSON> flow;
    int unknownMemberCount = 0;

    static BundlePlaybackJSON fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundlePlaybackJSON &) const = default;
};

} // namespace sorvane
