// Fuzz target for the stored preferences and the collage settings read from them:
// every input is the preferences.json of a user whose file was edited by hand,
// written by another version or damaged.
//
// Whatever the file holds, the settings come out within their bounds; saving
// them keeps every other key of the file as it was (a file that is not JSON is
// kept aside whole), and what was saved reads back as the same settings. The
// slideshow settings read and save the same way.

#include "FuzzSupport.h"
#include "collage/CollageSlideshowSettings.h"
#include "collage/CollageSlideshowSettingsStore.h"
#include "slideshow/PreferenceStore.h"
#include "slideshow/SlideshowSettings.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cmath>

using namespace sorvane;

namespace {

using Settings = CollageSlideshowSettings;

// Equal, counting NaN as equal to NaN: a value without a clamp keeps a NaN it was stored as.
bool same(Settings a, Settings b)
{
    for (double Settings::*field : {&Settings::imageChangeInterval, &Settings::variedLayoutInterval,
             &Settings::flowScrollSpeed, &Settings::flowScrollPointerPause}) {
        if (std::isnan(a.*field) && std::isnan(b.*field))
            a.*field = b.*field = 0;
    }
    return a == b;
}

void checkBounds(const Settings &s)
{
    FUZZ_CHECK(s.flowTilesPerChange >= 1);
    FUZZ_CHECK(s.flowColumnAdjustment >= -6 && s.flowColumnAdjustment <= 6);
    FUZZ_CHECK(s.flowScrollSpeed >= 6 && s.flowScrollSpeed <= 72);
    FUZZ_CHECK(s.flowScrollPointerPause >= 0 && s.flowScrollPointerPause <= 5);
    FUZZ_CHECK(
        toRaw(s.defaultLayout) == "collage" || toRaw(s.defaultLayout) == "flow" || toRaw(s.defaultLayout) == "scatter");
}

QJsonObject fileObject(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::quietMessages();
    static QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/sorvane-fuzz-preferences-XXXXXX"));
    const QString path = folder.filePath(QStringLiteral("preferences.json"));
    fuzz::writeFile(path, fuzz::bytes(data, size));
    const QJsonObject before = fileObject(path);

    PreferenceStore preferences(folder.path());
    const Settings loaded = Settings::load(preferences);
    checkBounds(loaded);
    {
        // The observable store reads the same way, and writes nothing while it reads.
        CollageSlideshowSettingsStore store(preferences);
        FUZZ_CHECK(same(store.settings(), loaded));
        FUZZ_CHECK(fileObject(path) == before);
    }

    const SlideshowSettings slideshow = SlideshowSettings::load(preferences);

    FUZZ_CHECK(!loaded.save(preferences).has_value());
    FUZZ_CHECK(!slideshow.save(preferences).has_value());
    const QJsonObject after = fileObject(path);
    for (auto it = before.constBegin(); it != before.constEnd(); ++it) {
        if (!it.key().startsWith(QLatin1StringView("collage."))
            && !it.key().startsWith(SlideshowSettings::preferenceKey))
            FUZZ_CHECK(after.value(it.key()) == it.value(), it.key().toUtf8());
    }
    const PreferenceStore reopened(folder.path());
    FUZZ_CHECK(same(Settings::load(reopened), loaded));
    FUZZ_CHECK(SlideshowSettings::load(reopened) == slideshow);

    // A file that was not a JSON object was set aside whole, never lost.
    const QStringList kept = QDir(folder.path()).entryList({QStringLiteral("preferences.json.unreadable-*")});
    const QByteArray input = fuzz::bytes(data, size);
    const bool damaged = !input.isEmpty() && !QJsonDocument::fromJson(input).isObject();
    FUZZ_CHECK(kept.size() == (damaged ? 1 : 0));
    for (const QString &name : kept) {
        QFile keptFile(folder.filePath(name));
        FUZZ_CHECK(keptFile.open(QIODevice::ReadOnly) && keptFile.readAll() == input);
        keptFile.remove();
    }
    return 0;
}
