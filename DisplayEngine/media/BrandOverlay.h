#pragma once

#include "media/BrandOverlayImageDecoding.h"
#include "media/BrandOverlaySettings.h"
#include "media/OverlayCorner.h"

#include <QJsonObject>
#include <QLatin1StringView>
#include <QRectF>
#include <QSize>
#include <QString>

#include <optional>

namespace sorvane {

// Why an overlay's settings or logo could not be used; named in log lines.
enum class BrandOverlayIssue { imageUndecodable, settingsUnwritable, settingsUnreadable };

// The case name: "imageUndecodable", "settingsUnwritable" or "settingsUnreadable".
QString toRaw(BrandOverlayIssue issue);

// A logo that passed every check: where it is and its decoded size.
struct BrandOverlayLogo {
    QString path;
    QSize size;

    bool operator==(const BrandOverlayLogo &) const = default;
};

// The overlay's rules: normalisation, placement, the settings file's form and
// the checks a logo must pass. Nothing here fails outward; bad input becomes
// defaults or an empty result, with a log line where a person should know.
class BrandOverlay {
public:
    // Numbers clamped into their ranges (a non-finite one takes its default),
    // the image path trimmed and dropped when blank.
    static BrandOverlaySettings normalise(BrandOverlaySettings settings);

    // The logo's rectangle on a display, origin at the top left. The percents
    // may be raw: they are normalised first. Any display or image edge that is
    // not positive and finite gives the empty rectangle.
    static QRectF geometry(OverlayCorner corner, double displayWidth, double displayHeight, double imageWidth,
        double imageHeight, double sizePercent, double marginPercent);

    // Capitalised keys; "ImagePath" only when a path is set. Written as given,
    // so callers normalise first when the record may hold non-finite numbers.
    static QJsonObject toJson(const BrandOverlaySettings &settings);
    // Tolerant: each member under its capitalised key, else under its
    // lower-case one, else its default. An unknown corner is the default
    // corner. Not normalised.
    static BrandOverlaySettings fromJson(const QJsonObject &object);

    // The logo to draw, or nothing. A disabled overlay or one without a path
    // has nothing to show and is not checked; otherwise the path must be a
    // safe absolute path to an existing file that decodes to a non-empty
    // image, and the first check that fails is logged.
    static std::optional<BrandOverlayLogo> logoImage(
        const BrandOverlaySettings &settings, const BrandOverlayImageDecoding &decoder);
};

// The overlay settings kept in `brand_overlay.json` in the engine's storage
// folder. Used from one thread.
class BrandOverlayStore {
public:
    static constexpr QLatin1StringView fileName {"brand_overlay.json"};

    explicit BrandOverlayStore(QString storageFolder);

    // The settings in force, always normalised: the in-memory value when one is
    // set, else the file's, else the defaults. Never fails; a file that exists
    // but cannot be read or decoded is logged.
    BrandOverlaySettings load() const;
    // Writes the normalised record atomically, creating the folder first. A
    // failure is logged only.
    void save(const BrandOverlaySettings &settings) const;

    // A value the running process holds, e.g. while a preferences screen edits
    // it; it wins over the file until cleared. Not written anywhere.
    void setInMemory(const BrandOverlaySettings &settings) { m_inMemory = settings; }
    void clearInMemory() { m_inMemory.reset(); }

    QString filePath() const;

private:
    QString m_folder;
    std::optional<BrandOverlaySettings> m_inMemory;
};

} // namespace sorvane
