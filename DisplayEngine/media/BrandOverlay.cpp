#include "media/BrandOverlay.h"

#include "EngineLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QJsonValue>
#include <QSaveFile>

#include <algorithm>
#include <cmath>
#include <utility>

namespace sorvane {

namespace {

struct MemberKeys {
    QLatin1StringView key;
    QLatin1StringView alternate;
};

constexpr MemberKeys enabledKeys {QLatin1StringView("Enabled"), QLatin1StringView("enabled")};
constexpr MemberKeys imagePathKeys {QLatin1StringView("ImagePath"), QLatin1StringView("imagePath")};
constexpr MemberKeys cornerKeys {QLatin1StringView("Corner"), QLatin1StringView("corner")};
constexpr MemberKeys sizePercentKeys {QLatin1StringView("SizePercent"), QLatin1StringView("sizePercent")};
constexpr MemberKeys opacityKeys {QLatin1StringView("Opacity"), QLatin1StringView("opacity")};
constexpr MemberKeys marginPercentKeys {QLatin1StringView("MarginPercent"), QLatin1StringView("marginPercent")};

// The member under its capitalised key when that has the wanted type, else
// under the lower-case key when that has it.
std::optional<QJsonValue> member(const QJsonObject &object, const MemberKeys &keys, QJsonValue::Type type)
{
    for (const QLatin1StringView key : {keys.key, keys.alternate}) {
        const QJsonValue value = object.value(key);
        if (value.type() == type)
            return value;
    }
    return std::nullopt;
}

double finiteClamped(double value, double low, double high, double fallback)
{
    return std::isfinite(value) ? std::clamp(value, low, high) : fallback;
}

void logLine(const char *text)
{
    qCWarning(lcEngine, "%s", text);
}

void logIssue(BrandOverlayIssue issue, const char *text)
{
    qCWarning(lcEngine, "[%s] %s", qUtf8Printable(toRaw(issue)), text);
}

bool positiveAndFinite(double value)
{
    return std::isfinite(value) && value > 0;
}

} // namespace

QString toRaw(BrandOverlayIssue issue)
{
    switch (issue) {
    case BrandOverlayIssue::imageUndecodable:
        return QStringLiteral("imageUndecodable");
    case BrandOverlayIssue::settingsUnwritable:
        return QStringLiteral("settingsUnwritable");
    case BrandOverlayIssue::settingsUnreadable:
        return QStringLiteral("settingsUnreadable");
    }
    return {};
}

BrandOverlaySettings BrandOverlay::normalise(BrandOverlaySettings settings)
{
    const BrandOverlaySettings defaults;
    settings.sizePercent = finiteClamped(settings.sizePercent, 3.0, 15.0, defaults.sizePercent);
    settings.opacity = finiteClamped(settings.opacity, 0.0, 1.0, defaults.opacity);
    settings.marginPercent = finiteClamped(settings.marginPercent, 1.0, 5.0, defaults.marginPercent);
    if (settings.imagePath) {
        settings.imagePath = settings.imagePath->trimmed();
        if (settings.imagePath->isEmpty())
            settings.imagePath.reset();
    }
    return settings;
}

QRectF BrandOverlay::geometry(OverlayCorner corner, double displayWidth, double displayHeight, double imageWidth,
    double imageHeight, double sizePercent, double marginPercent)
{
    if (!positiveAndFinite(displayWidth) || !positiveAndFinite(displayHeight) || !positiveAndFinite(imageWidth)
        || !positiveAndFinite(imageHeight))
        return {};

    BrandOverlaySettings percents;
    percents.sizePercent = sizePercent;
    percents.marginPercent = marginPercent;
    percents = normalise(percents);

    const double edge = std::min(displayWidth, displayHeight);
    const double box = percents.sizePercent * edge / 100.0;
    const double margin = edge * percents.marginPercent / 100.0;
    // Fit inside the square box with the logo's aspect ratio kept.
    const double scale = std::min(box / imageWidth, box / imageHeight);
    const double width = imageWidth * scale;
    const double height = imageHeight * scale;

    const double left = margin;
    const double right = displayWidth - margin - width;
    const double top = margin;
    const double bottom = displayHeight - margin - height;
    switch (corner) {
    case OverlayCorner::topLeft:
        return {left, top, width, height};
    case OverlayCorner::topRight:
        return {right, top, width, height};
    case OverlayCorner::bottomLeft:
        return {left, bottom, width, height};
    case OverlayCorner::bottomRight:
        return {right, bottom, width, height};
    }
    return {};
}

QJsonObject BrandOverlay::toJson(const BrandOverlaySettings &settings)
{
    QJsonObject object;
    object.insert(enabledKeys.key, settings.enabled);
    if (settings.imagePath)
        object.insert(imagePathKeys.key, *settings.imagePath);
    object.insert(cornerKeys.key, toRaw(settings.corner));
    object.insert(sizePercentKeys.key, settings.sizePercent);
    object.insert(opacityKeys.key, settings.opacity);
    object.insert(marginPercentKeys.key, settings.marginPercent);
    return object;
}

BrandOverlaySettings BrandOverlay::fromJson(const QJsonObject &object)
{
    BrandOverlaySettings settings;
    if (const auto value = member(object, enabledKeys, QJsonValue::Bool))
        settings.enabled = value->toBool();
    if (const auto value = member(object, imagePathKeys, QJsonValue::String))
        settings.imagePath = value->toString();
    if (const auto value = member(object, cornerKeys, QJsonValue::String))
        settings.corner = fromRaw<OverlayCorner>(value->toString()).value_or(settings.corner);
    if (const auto value = member(object, sizePercentKeys, QJsonValue::Double))
        settings.sizePercent = value->toDouble();
    if (const auto value = member(object, opacityKeys, QJsonValue::Double))
        settings.opacity = value->toDouble();
    if (const auto value = member(object, marginPercentKeys, QJsonValue::Double))
        settings.marginPercent = value->toDouble();
    return settings;
}

std::optional<BrandOverlayLogo> BrandOverlay::logoImage(
    const BrandOverlaySettings &settings, const BrandOverlayImageDecoding &decoder)
{
    const BrandOverlaySettings normalised = normalise(settings);
    if (!normalised.enabled || !normalised.imagePath)
        return std::nullopt;
    const QString &path = *normalised.imagePath;

    // The path comes from a settings file or a bundle; anything that could walk
    // out of where it points is refused outright.
    if (!path.startsWith(QLatin1Char('/')) || path.contains(QLatin1StringView(".."))) {
        logLine("Brand overlay image path is not a safe absolute path; overlay hidden");
        return std::nullopt;
    }
    if (!QFileInfo::exists(path)) {
        logLine("Brand overlay image file is missing; overlay hidden");
        return std::nullopt;
    }
    const std::optional<QSize> size = decoder.decode(path);
    if (!size || size->width() <= 0 || size->height() <= 0) {
        logIssue(BrandOverlayIssue::imageUndecodable, "Brand overlay image could not be decoded; overlay hidden");
        return std::nullopt;
    }
    return BrandOverlayLogo {path, *size};
}

BrandOverlayStore::BrandOverlayStore(QString storageFolder) : m_folder(std::move(storageFolder)) { }

QString BrandOverlayStore::filePath() const
{
    return QDir(m_folder).filePath(fileName);
}

BrandOverlaySettings BrandOverlayStore::load() const
{
    if (m_inMemory)
        return BrandOverlay::normalise(*m_inMemory);

    const QString path = filePath();
    if (!QFileInfo::exists(path))
        return {};

    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
        if (error.error == QJsonParseError::NoError && document.isObject())
            return BrandOverlay::normalise(BrandOverlay::fromJson(document.object()));
    }
    logIssue(BrandOverlayIssue::settingsUnreadable, "brand_overlay.json could not be read; using defaults");
    return {};
}

void BrandOverlayStore::save(const BrandOverlaySettings &settings) const
{
    // Normalised first: the file then never holds a number JSON cannot carry.
    const QByteArray bytes
        = QJsonDocument(BrandOverlay::toJson(BrandOverlay::normalise(settings))).toJson(QJsonDocument::Indented);
    if (QDir().mkpath(m_folder)) {
        QSaveFile file(filePath());
        if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
            return;
    }
    logIssue(BrandOverlayIssue::settingsUnwritable, "brand_overlay.json could not be written");
}

} // namespace sorvane
