#pragma once

#include "media/ImageItem.h"
#include "slideshow/HostShell.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/SlideshowViewModel.h"
#include "support/FakeTime.h"

#include <QList>

#include <memory>

namespace sorvane::test {

// A host whose answers a test sets, and which keeps trash requests until the test answers them.
class ScriptedHost final : public HostShell {
public:
    void moveToTrash(const ImageItem &item, TrashDone done) override
    {
        asked.append(item);
        pending = std::move(done);
    }
    bool prefersReducedMotion() const override { return reduceMotion; }
    bool showControlsAfterCommands() const override { return controlsAfterCommands; }

    void answer(TrashOutcome outcome) { std::exchange(pending, nullptr)(outcome, QStringLiteral("refused")); }

    bool reduceMotion = false;
    bool controlsAfterCommands = true;
    QList<ImageItem> asked;
    TrashDone pending;
};

// Preferences whose writes a test can make fail, as a full disk would.
class FlakyPreferences final : public Preferences {
public:
    std::optional<PreferenceValue> value(const QString &key) const override { return store.value(key); }
    std::optional<QString> setValues(const QList<Entry> &entries) override
    {
        return failWrites ? std::optional<QString>(QStringLiteral("disk full")) : store.setValues(entries);
    }
    std::optional<QString> remove(const QString &key) override { return store.remove(key); }

    InMemoryPreferences store;
    bool failWrites = false;
};

// Local items /show/img1.jpg ... in that order.
inline QList<ImageItem> numberedItems(int count)
{
    QList<ImageItem> items;
    for (int i = 1; i <= count; ++i)
        items.append(ImageItem(QUrl::fromLocalFile(QStringLiteral("/show/img%1.jpg").arg(i))));
    return items;
}

// Everything a view model needs, with no display and time that moves only on request.
struct SlideshowRig {
    FakeTime time;
    FlakyPreferences preferences;
    ScriptedHost host;

    std::unique_ptr<SlideshowViewModel> make(
        QList<ImageItem> items, SlideshowSettings settings = {}, SortMode mode = SortMode::sequential, quint64 seed = 7)
    {
        auto model = std::make_unique<SlideshowViewModel>(
            SlideshowViewModel::Services {time, time, preferences, host}, std::move(items), settings, mode, seed);
        model->setUseTransientSettings(true);
        return model;
    }
};

} // namespace sorvane::test
