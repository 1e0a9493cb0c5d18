// Fuzz target for the brand overlay settings: every input is the brand_overlay.json
// of the engine's storage folder, as a hand edit or another version left it.
//
// Whatever the file holds, the settings in force are within their ranges, the
// logo lands inside any display, and saving them then loading again changes
// nothing.

#include "FuzzSupport.h"
#include "media/BrandOverlay.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <cmath>

using namespace sorvane;

namespace {

void checkRanges(const BrandOverlaySettings &s)
{
    FUZZ_CHECK(s.sizePercent >= 3 && s.sizePercent <= 15);
    FUZZ_CHECK(s.opacity >= 0 && s.opacity <= 1);
    FUZZ_CHECK(s.marginPercent >= 1 && s.marginPercent <= 5);
    FUZZ_CHECK(!s.imagePath || (!s.imagePath->isEmpty() && *s.imagePath == s.imagePath->trimmed()));
}

// On displays and logos of every shape, the logo sits wholly inside the display.
void checkGeometry(const BrandOverlaySettings &s)
{
    const QSizeF displays[] = {{1920, 1080}, {1, 1}, {800, 3000}, {1e7, 2}};
    const QSizeF logos[] = {{512, 512}, {1, 900}, {4000, 3}};
    for (const QSizeF &display : displays) {
        for (const QSizeF &logo : logos) {
            const QRectF r = BrandOverlay::geometry(s.corner, display.width(), display.height(), logo.width(),
                logo.height(), s.sizePercent, s.marginPercent);
            FUZZ_CHECK(std::isfinite(r.x()) && std::isfinite(r.y()) && r.width() > 0 && r.height() > 0);
            const double slack = 1e-9 * std::max(display.width(), display.height());
            FUZZ_CHECK(r.left() >= -slack && r.top() >= -slack);
            FUZZ_CHECK(r.right() <= display.width() + slack && r.bottom() <= display.height() + slack);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::quietMessages();
    static QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/sorvane-fuzz-overlay-XXXXXX"));
    const BrandOverlayStore store(folder.path());
    fuzz::writeFile(store.filePath(), fuzz::bytes(data, size));

    const BrandOverlaySettings loaded = store.load();
    checkRanges(loaded);
    FUZZ_CHECK(BrandOverlay::normalise(loaded) == loaded);
    checkGeometry(loaded);

    // Text that UTF-8 cannot carry (a lone surrogate) is written as '?'; all else survives.
    const bool faithful = !loaded.imagePath || loaded.imagePath->isValidUtf16();
    store.save(loaded);
    const BrandOverlaySettings reread = store.load();
    checkRanges(reread);
    if (faithful)
        FUZZ_CHECK(reread == loaded, QJsonDocument(BrandOverlay::toJson(loaded)).toJson());
    return 0;
}
