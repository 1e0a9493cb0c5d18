#pragma once

#include "collage/CollageLayout.h"
#include "slideshow/ControlScope.h"
#include "slideshow/DisplayMode.h"
#include "slideshow/EscBehavior.h"
#include "slideshow/FileDisplayFormat.h"
#include "slideshow/ImageFilter.h"
#include "slideshow/ImageScalingMode.h"
#include "slideshow/SlideshowAction.h"
#include "slideshow/SortMode.h"
#include "slideshow/SyncMode.h"
#include "slideshow/TransitionDirection.h"
#include "slideshow/TransitionStyle.h"

#include <QObject>
#include <QtQml/qqml.h>

// The engine's enumerations as QML sees them: `Slideshow.TransitionStyle.Flip`. The engine's
// own enumerations stay free of the meta-object system; these mirror them value for value
// (QML wants enumerators that begin with a capital letter) and a test holds the two in step.
// The view model's enumeration properties reach QML as these numbers.
namespace sorvane::SlideshowEnums {
Q_NAMESPACE
QML_NAMED_ELEMENT(Slideshow)
// "None" names a case of several of them: always spell the enumeration.
Q_CLASSINFO("RegisterEnumClassesUnscoped", "false")

template <typename E> constexpr int raw(E value)
{
    return static_cast<int>(value);
}

enum class TransitionStyle {
    None = raw(sorvane::TransitionStyle::none),
    CrossFade = raw(sorvane::TransitionStyle::crossFade),
    KenBurns = raw(sorvane::TransitionStyle::kenBurns),
    Slide = raw(sorvane::TransitionStyle::slide),
    Zoom = raw(sorvane::TransitionStyle::zoom),
    Flip = raw(sorvane::TransitionStyle::flip),
    Random = raw(sorvane::TransitionStyle::random),
};
Q_ENUM_NS(TransitionStyle)

enum class TransitionDirection {
    Forward = raw(sorvane::TransitionDirection::forward),
    Backward = raw(sorvane::TransitionDirection::backward),
};
Q_ENUM_NS(TransitionDirection)

enum class ImageFilter {
    None = raw(sorvane::ImageFilter::none),
    BlackAndWhite = raw(sorvane::ImageFilter::blackAndWhite),
    Sepia = raw(sorvane::ImageFilter::sepia),
    Vintage = raw(sorvane::ImageFilter::vintage),
};
Q_ENUM_NS(ImageFilter)

enum class ControlScope {
    FocusedOnly = raw(sorvane::ControlScope::focusedOnly),
    All = raw(sorvane::ControlScope::all),
    Mirrored = raw(sorvane::ControlScope::mirrored),
};
Q_ENUM_NS(ControlScope)

enum class EscBehavior {
    StopFocused = raw(sorvane::EscBehavior::stopFocused),
    StopAll = raw(sorvane::EscBehavior::stopAll),
    ExitFullscreenFirst = raw(sorvane::EscBehavior::exitFullscreenFirst),
};
Q_ENUM_NS(EscBehavior)

enum class SyncMode {
    Synchronized = raw(sorvane::SyncMode::synchronized),
    Phased = raw(sorvane::SyncMode::phased),
};
Q_ENUM_NS(SyncMode)

enum class SortMode {
    Random = raw(sorvane::SortMode::random),
    Sequential = raw(sorvane::SortMode::sequential),
    CreationDate = raw(sorvane::SortMode::creationDate),
    ModifiedDate = raw(sorvane::SortMode::modifiedDate),
};
Q_ENUM_NS(SortMode)

enum class ImageScalingMode {
    FitToScreen = raw(sorvane::ImageScalingMode::fitToScreen),
    FillScreen = raw(sorvane::ImageScalingMode::fillScreen),
    ActualSize = raw(sorvane::ImageScalingMode::actualSize),
};
Q_ENUM_NS(ImageScalingMode)

enum class FileDisplayFormat {
    FilenameOnly = raw(sorvane::FileDisplayFormat::filenameOnly),
    FullPath = raw(sorvane::FileDisplayFormat::fullPath),
    FolderAndFilename = raw(sorvane::FileDisplayFormat::folderAndFilename),
};
Q_ENUM_NS(FileDisplayFormat)

enum class DisplayMode {
    Standard = raw(sorvane::DisplayMode::standard),
    Collage = raw(sorvane::DisplayMode::collage),
};
Q_ENUM_NS(DisplayMode)

enum class CollageLayout {
    Collage = raw(sorvane::CollageLayout::collage),
    Flow = raw(sorvane::CollageLayout::flow),
    Scatter = raw(sorvane::CollageLayout::scatter),
};
Q_ENUM_NS(CollageLayout)

// What a control does, as the key bound to it would.
enum class Action {
    ToggleFullScreen = raw(sorvane::SlideshowAction::toggleFullScreen),
    StartStop = raw(sorvane::SlideshowAction::startStop),
    NextImage = raw(sorvane::SlideshowAction::nextImage),
    PreviousImage = raw(sorvane::SlideshowAction::previousImage),
    IncreaseInterval = raw(sorvane::SlideshowAction::increaseInterval),
    DecreaseInterval = raw(sorvane::SlideshowAction::decreaseInterval),
    ToggleSortMode = raw(sorvane::SlideshowAction::toggleSortMode),
    ToggleCrossFade = raw(sorvane::SlideshowAction::toggleCrossFade),
    ZoomIn = raw(sorvane::SlideshowAction::zoomIn),
    ZoomOut = raw(sorvane::SlideshowAction::zoomOut),
    ResetZoom = raw(sorvane::SlideshowAction::resetZoom),
    ShowHelp = raw(sorvane::SlideshowAction::showHelp),
    Exit = raw(sorvane::SlideshowAction::exit),
    MoveToTrash = raw(sorvane::SlideshowAction::moveToTrash),
    CycleImageFilter = raw(sorvane::SlideshowAction::cycleImageFilter),
};
Q_ENUM_NS(Action)

} // namespace sorvane::SlideshowEnums
