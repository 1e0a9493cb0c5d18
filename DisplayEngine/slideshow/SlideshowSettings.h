#pragma once

#include "slideshow/FileDisplayFormat.h"
#include "slideshow/ImageScalingMode.h"
#include "slideshow/KeyBinding.h"
#include "slideshow/SlideshowImageSource.h"
#include "slideshow/SortMode.h"
#include "slideshow/TransitionStyle.h"

#include <QJsonObject>
#include <QMetaType>
#include <QString>

#include <optional>

namespace sorvane {

class Preferences;

// How a slideshow plays and looks. A plain value: each slideshow window keeps its own
// copy. Stored as one JSON document under `preferenceKey`, whose keys are the field
// names; enumerations are stored as their labels. The record checks no ranges: the
// code that uses a value bounds it.
struct SlideshowSettings {
    static inline const QString preferenceKey = QStringLiteral("slideshowSettings");

    double defaultDuration = 5.0; // seconds each slide stays when auto-advancing
    double transitionDuration = 0.6; // seconds
    TransitionStyle transitionStyle = TransitionStyle::crossFade;
    bool autoAdvance = true;
    bool loopSlideshow = true;
    bool reshuffleOnLoop = false;
    QString backgroundColor = QStringLiteral("black");
    ImageScalingMode imageScaling = ImageScalingMode::fitToScreen;
    SlideshowImageSource imageSource = SlideshowImageSource::entireFolder;
    bool showImageInfo = true;
    bool alwaysShowImageInfo = false;
    FileDisplayFormat fileDisplayFormat = FileDisplayFormat::folderAndFilename;
    bool showProgress = true;
    double controlHideDelay = 5.0; // seconds
    KeyBindings keyBindings = defaultKeyBindings();
    bool alwaysStartFullScreen = true;
    QString controlSize = QStringLiteral("medium");
    double controlOpacity = 0.4;
    bool enablePinchZoom = true;
    bool preventZoomOutPast1x = true;
    bool naturalScrollingForPan = false;
    bool enableScrollToZoom = true;
    double scrollZoomSensitivity = 0.01;
    bool enableSmartZoom = true;
    double smartZoomLevel = 2.0;
    SortMode secondarySlideshowSortMode = SortMode::random;
    bool secondarySlideshowStartsPaused = false;
    bool limitSlideshowsToMonitorCount = true;

    // Every field under its key; never the legacy "enableCrossFade".
    QJsonObject toJson() const;
    // Tolerant, key by key: a missing key keeps its default, a present key of the wrong
    // type fails the whole record. A missing or unknown `transitionStyle` falls back to
    // the legacy "enableCrossFade" flag: true gives crossFade, false or missing none.
    static std::optional<SlideshowSettings> fromJson(const QJsonObject &object);

    // The stored record, or the defaults when there is none or it cannot be decoded.
    static SlideshowSettings load(const Preferences &preferences);
    // Replaces the stored record. Nothing on success, otherwise why it was not kept
    // (the caller keeps playing with the values it has).
    std::optional<QString> save(Preferences &preferences) const;

    bool operator==(const SlideshowSettings &) const = default;
};

} // namespace sorvane

Q_DECLARE_METATYPE(sorvane::SlideshowSettings)
