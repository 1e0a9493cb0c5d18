#pragma once

#include "bundle/BundleBackground.h"
#include "bundle/BundleFileDisplayFormat.h"
#include "collage/CollageLayout.h"
#include "collage/FlowOrientation.h"
#include "collage/FlowWeightMode.h"
#include "media/OverlayCorner.h"
#include "slideshow/ControlScope.h"
#include "slideshow/DisplayMode.h"
#include "slideshow/ImageFilter.h"
#include "slideshow/ImageScalingMode.h"
#include "slideshow/SyncMode.h"

#include <QLatin1StringView>
#include <QString>

#include <array>
#include <optional>
#include <utility>

namespace sorvane {

// The manifest's text for each enumerated value; the writer emits and the mapper
// accepts exactly these. The first entry of each table is the default.
template <typename E> struct BundleWireTable;

#define SORVANE_WIRE_TABLE(Type, N, ...)                                                                               \
    template <> struct BundleWireTable<Type> {                                                                         \
        static constexpr std::array<std::pair<Type, QLatin1StringView>, N> entries {{__VA_ARGS__}};                    \
    };

SORVANE_WIRE_TABLE(DisplayMode, 2, {DisplayMode::standard, QLatin1StringView("standard")},
    {DisplayMode::collage, QLatin1StringView("collage")})
// A manifest names the Varied wall "varied"; settings store it as "collage".
SORVANE_WIRE_TABLE(CollageLayout, 3, {CollageLayout::flow, QLatin1StringView("flow")},
    {CollageLayout::scatter, QLatin1StringView("scatter")}, {CollageLayout::collage, QLatin1StringView("varied")})
SORVANE_WIRE_TABLE(ImageScalingMode, 3, {ImageScalingMode::fitToScreen, QLatin1StringView("fit_to_screen")},
    {ImageScalingMode::fillScreen, QLatin1StringView("fill_screen")},
    {ImageScalingMode::actualSize, QLatin1StringView("actual_size")})
SORVANE_WIRE_TABLE(BundleBackground, 2, {BundleBackground::black, QLatin1StringView("black")},
    {BundleBackground::darkGray, QLatin1StringView("dark_gray")})
SORVANE_WIRE_TABLE(ImageFilter, 4, {ImageFilter::none, QLatin1StringView("none")},
    {ImageFilter::blackAndWhite, QLatin1StringView("black_and_white")},
    {ImageFilter::sepia, QLatin1StringView("sepia")}, {ImageFilter::vintage, QLatin1StringView("vintage")})
SORVANE_WIRE_TABLE(BundleFileDisplayFormat, 4,
    {BundleFileDisplayFormat::filenameOnly, QLatin1StringView("filename_only")},
    {BundleFileDisplayFormat::relativePath, QLatin1StringView("relative_path")},
    {BundleFileDisplayFormat::absolutePath, QLatin1StringView("absolute_path")},
    {BundleFileDisplayFormat::parentPlusFilename, QLatin1StringView("parent_plus_filename")})
SORVANE_WIRE_TABLE(FlowOrientation, 2, {FlowOrientation::vertical, QLatin1StringView("vertical")},
    {FlowOrientation::horizontal, QLatin1StringView("horizontal")})
SORVANE_WIRE_TABLE(FlowWeightMode, 2, {FlowWeightMode::proportional, QLatin1StringView("proportional")},
    {FlowWeightMode::weighted, QLatin1StringView("weighted")})
SORVANE_WIRE_TABLE(ControlScope, 3, {ControlScope::focusedOnly, QLatin1StringView("independent")},
    {ControlScope::all, QLatin1StringView("linked")}, {ControlScope::mirrored, QLatin1StringView("mirrored")})
SORVANE_WIRE_TABLE(SyncMode, 2, {SyncMode::synchronized, QLatin1StringView("synchronized")},
    {SyncMode::phased, QLatin1StringView("phased")})
SORVANE_WIRE_TABLE(OverlayCorner, 4, {OverlayCorner::bottomRight, QLatin1StringView("bottom_right")},
    {OverlayCorner::topLeft, QLatin1StringView("top_left")}, {OverlayCorner::topRight, QLatin1StringView("top_right")},
    {OverlayCorner::bottomLeft, QLatin1StringView("bottom_left")})

#undef SORVANE_WIRE_TABLE

template <typename E> QString toWire(E value)
{
    for (const auto &[candidate, text] : BundleWireTable<E>::entries) {
        if (candidate == value)
            return QString(text);
    }
    return {};
}

// Exact, case-sensitive match.
template <typename E> std::optional<E> fromWire(const QString &text)
{
    for (const auto &[candidate, wire] : BundleWireTable<E>::entries) {
        if (text == wire)
            return candidate;
    }
    return std::nullopt;
}

} // namespace sorvane
