// The stored raw strings of the slideshow's enumerations. They are what settings
// files hold, so they are kept exactly, capitals and spaces included.
#include "media/RawLabels.h"
#include "slideshow/ControlScope.h"
#include "slideshow/EscBehavior.h"
#include "slideshow/FileDisplayFormat.h"
#include "slideshow/ImageScalingMode.h"
#include "slideshow/SlideshowImageSource.h"
#include "slideshow/SortMode.h"
#include "slideshow/SyncMode.h"

namespace sorvane {

namespace {

constexpr RawLabels<ImageScalingMode, 3> scalingLabels {
    allImageScalingModes, {"Fit to Screen", "Fill Screen", "Actual Size"}};
constexpr RawLabels<SlideshowImageSource, 2> sourceLabels {
    allSlideshowImageSources, {"Selected Images Only", "Entire Folder"}};
constexpr RawLabels<SortMode, 4> sortLabels {
    allSortModes, {"Random Order", "Sequential (by File Path)", "By Creation Date", "By Modified Date"}};
constexpr RawLabels<FileDisplayFormat, 3> formatLabels {
    allFileDisplayFormats, {"Filename Only", "Full Path", "Folder/Filename"}};
constexpr RawLabels<ControlScope, 3> scopeLabels {
    allControlScopes, {"This Slideshow", "Linked Slideshows", "Mirror All"}};
constexpr RawLabels<ControlScope, 3> scopeShortLabels {allControlScopes, {"Independent", "Linked", "Mirror"}};
constexpr RawLabels<EscBehavior, 3> escLabels {
    allEscBehaviors, {"Stop Current Slideshow", "Stop All Slideshows", "Exit Fullscreen First"}};
constexpr RawLabels<EscBehavior, 3> escDescriptions {allEscBehaviors,
    {"Stops only the focused slideshow window", "Stops all running slideshows at once",
        "First exits fullscreen, second ESC stops the slideshow"}};
constexpr RawLabels<SyncMode, 2> syncLabels {allSyncModes, {"Synchronized", "Phased"}};

// toRaw and fromRaw of one enumeration, from its table.
#define SORVANE_RAW_FUNCTIONS(Enum, table)                                                                             \
    QString toRaw(Enum value)                                                                                          \
    {                                                                                                                  \
        return table.toRaw(value);                                                                                     \
    }                                                                                                                  \
    template <> std::optional<Enum> fromRaw<Enum>(QStringView raw)                                                     \
    {                                                                                                                  \
        return table.fromRaw(raw);                                                                                     \
    }

} // namespace

SORVANE_RAW_FUNCTIONS(ImageScalingMode, scalingLabels)
SORVANE_RAW_FUNCTIONS(SlideshowImageSource, sourceLabels)
SORVANE_RAW_FUNCTIONS(SortMode, sortLabels)
SORVANE_RAW_FUNCTIONS(FileDisplayFormat, formatLabels)
SORVANE_RAW_FUNCTIONS(ControlScope, scopeLabels)
SORVANE_RAW_FUNCTIONS(EscBehavior, escLabels)
SORVANE_RAW_FUNCTIONS(SyncMode, syncLabels)

QString shortLabel(ControlScope scope)
{
    return scopeShortLabels.toRaw(scope);
}

QString description(EscBehavior behavior)
{
    return escDescriptions.toRaw(behavior);
}

} // namespace sorvane
