#pragma once

#include "collage/CollageSettingPreset.h"
#include "collage/CollageSlideshowSettings.h"

#include <QObject>

#include <array>

namespace sorvane {

class Preferences;

// The viewer's collage settings, observed by the walls and their menus. Every
// change of a stored field writes all fifteen "collage." keys at once, so the
// preferences always hold one consistent record; there is no separate apply
// step. Two flags live for the run only and start false. Main thread only.
class CollageSlideshowSettingsStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(CollageLayout defaultLayout READ defaultLayout WRITE setDefaultLayout NOTIFY defaultLayoutChanged)
    Q_PROPERTY(double imageChangeInterval READ imageChangeInterval WRITE setImageChangeInterval NOTIFY
            imageChangeIntervalChanged)
    Q_PROPERTY(bool shuffleVariedLayout READ shuffleVariedLayout WRITE setShuffleVariedLayout NOTIFY
            shuffleVariedLayoutChanged)
    Q_PROPERTY(double variedLayoutInterval READ variedLayoutInterval WRITE setVariedLayoutInterval NOTIFY
            variedLayoutIntervalChanged)
    Q_PROPERTY(bool showTileHoverControls READ showTileHoverControls WRITE setShowTileHoverControls NOTIFY
            showTileHoverControlsChanged)
    Q_PROPERTY(FlowWeightMode flowWeightMode READ flowWeightMode WRITE setFlowWeightMode NOTIFY flowWeightModeChanged)
    Q_PROPERTY(
        FlowOrientation flowOrientation READ flowOrientation WRITE setFlowOrientation NOTIFY flowOrientationChanged)
    Q_PROPERTY(
        qint64 flowTilesPerChange READ flowTilesPerChange WRITE setFlowTilesPerChange NOTIFY flowTilesPerChangeChanged)
    Q_PROPERTY(bool flowStaggerSwaps READ flowStaggerSwaps WRITE setFlowStaggerSwaps NOTIFY flowStaggerSwapsChanged)
    Q_PROPERTY(qint64 flowColumnAdjustment READ flowColumnAdjustment WRITE setFlowColumnAdjustment NOTIFY
            flowColumnAdjustmentChanged)
    Q_PROPERTY(
        bool flowInfiniteScroll READ flowInfiniteScroll WRITE setFlowInfiniteScroll NOTIFY flowInfiniteScrollChanged)
    Q_PROPERTY(bool flowScrollBidirectional READ flowScrollBidirectional WRITE setFlowScrollBidirectional NOTIFY
            flowScrollBidirectionalChanged)
    Q_PROPERTY(double flowScrollSpeed READ flowScrollSpeed WRITE setFlowScrollSpeed NOTIFY flowScrollSpeedChanged)
    Q_PROPERTY(double flowScrollPointerPause READ flowScrollPointerPause WRITE setFlowScrollPointerPause NOTIFY
            flowScrollPointerPauseChanged)
    Q_PROPERTY(
        bool flowAutoCycleTiles READ flowAutoCycleTiles WRITE setFlowAutoCycleTiles NOTIFY flowAutoCycleTilesChanged)
    Q_PROPERTY(
        bool flowScrollReversed READ flowScrollReversed WRITE setFlowScrollReversed NOTIFY flowScrollReversedChanged)
    Q_PROPERTY(bool flowScrollPaused READ flowScrollPaused WRITE setFlowScrollPaused NOTIFY flowScrollPausedChanged)
    Q_PROPERTY(CollageSlideshowSettings settings READ settings NOTIFY settingsChanged)

public:
    // The Boolean settings a menu item can flip.
    enum class Flag {
        shuffleVariedLayout,
        showTileHoverControls,
        flowStaggerSwaps,
        flowInfiniteScroll,
        flowScrollBidirectional,
        flowAutoCycleTiles,
        // For this run only: never stored.
        flowScrollReversed,
        flowScrollPaused,
    };
    Q_ENUM(Flag)

    static constexpr std::array<CollageSettingPreset, 4> flowScrollSpeedPresets {{
        {QLatin1StringView("Slow"), 9.0},
        {QLatin1StringView("Normal"), 18.0},
        {QLatin1StringView("Fast"), 36.0},
        {QLatin1StringView("Faster"), 64.0},
    }};
    static constexpr std::array<CollageSettingPreset, 4> flowScrollPointerPausePresets {{
        {QLatin1StringView("Never"), 0.0},
        {QLatin1StringView("Brief"), 0.5},
        {QLatin1StringView("Standard"), 2.0},
        {QLatin1StringView("Long"), 5.0},
    }};

    // Reads the stored settings; `preferences` must outlive the store.
    explicit CollageSlideshowSettingsStore(Preferences &preferences, QObject *parent = nullptr);

    const CollageSlideshowSettings &settings() const { return m_settings; }
    // Takes every field of `settings` and stores them once.
    void setSettings(const CollageSlideshowSettings &settings);

    CollageLayout defaultLayout() const { return m_settings.defaultLayout; }
    double imageChangeInterval() const { return m_settings.imageChangeInterval; }
    bool shuffleVariedLayout() const { return m_settings.shuffleVariedLayout; }
    double variedLayoutInterval() const { return m_settings.variedLayoutInterval; }
    bool showTileHoverControls() const { return m_settings.showTileHoverControls; }
    FlowWeightMode flowWeightMode() const { return m_settings.flowWeightMode; }
    FlowOrientation flowOrientation() const { return m_settings.flowOrientation; }
    qint64 flowTilesPerChange() const { return m_settings.flowTilesPerChange; }
    bool flowStaggerSwaps() const { return m_settings.flowStaggerSwaps; }
    qint64 flowColumnAdjustment() const { return m_settings.flowColumnAdjustment; }
    bool flowInfiniteScroll() const { return m_settings.flowInfiniteScroll; }
    bool flowScrollBidirectional() const { return m_settings.flowScrollBidirectional; }
    double flowScrollSpeed() const { return m_settings.flowScrollSpeed; }
    double flowScrollPointerPause() const { return m_settings.flowScrollPointerPause; }
    bool flowAutoCycleTiles() const { return m_settings.flowAutoCycleTiles; }
    bool flowScrollReversed() const { return m_flowScrollReversed; }
    bool flowScrollPaused() const { return m_flowScrollPaused; }

    // Each stores the value as given (bounds apply when it is read back) and
    // writes all fifteen keys, also when the value did not change.
    void setDefaultLayout(CollageLayout layout);
    void setImageChangeInterval(double seconds);
    void setShuffleVariedLayout(bool shuffle);
    void setVariedLayoutInterval(double seconds);
    void setShowTileHoverControls(bool show);
    void setFlowWeightMode(FlowWeightMode mode);
    void setFlowOrientation(FlowOrientation orientation);
    void setFlowTilesPerChange(qint64 tiles);
    void setFlowStaggerSwaps(bool stagger);
    void setFlowColumnAdjustment(qint64 adjustment);
    void setFlowInfiniteScroll(bool infinite);
    void setFlowScrollBidirectional(bool bidirectional);
    void setFlowScrollSpeed(double speed);
    void setFlowScrollPointerPause(double seconds);
    void setFlowAutoCycleTiles(bool autoCycle);
    void setFlowScrollReversed(bool reversed);
    void setFlowScrollPaused(bool paused);

    // Moves the column adjustment by `delta`, kept within its bounds, and
    // stores it even when the bound leaves it unchanged.
    Q_INVOKABLE void adjustFlowColumns(qint64 delta);
    // Flips a flag; the stored ones are stored, the per-run ones are not.
    Q_INVOKABLE void toggle(Flag flag);

    // Sets the value of the preset with this label; false, changing nothing,
    // for an unknown label.
    Q_INVOKABLE bool selectFlowScrollSpeed(const QString &label);
    Q_INVOKABLE bool selectFlowScrollPointerPause(const QString &label);
    // The label of the preset nearest to `value`; on a tie the earlier preset.
    static QString flowScrollSpeedLabel(double speed);
    static QString flowScrollPointerPauseLabel(double seconds);

Q_SIGNALS:
    void defaultLayoutChanged();
    void imageChangeIntervalChanged();
    void shuffleVariedLayoutChanged();
    void variedLayoutIntervalChanged();
    void showTileHoverControlsChanged();
    void flowWeightModeChanged();
    void flowOrientationChanged();
    void flowTilesPerChangeChanged();
    void flowStaggerSwapsChanged();
    void flowColumnAdjustmentChanged();
    void flowInfiniteScrollChanged();
    void flowScrollBidirectionalChanged();
    void flowScrollSpeedChanged();
    void flowScrollPointerPauseChanged();
    void flowAutoCycleTilesChanged();
    void flowScrollReversedChanged();
    void flowScrollPausedChanged();
    // After any of the fifteen stored fields changed, for observers of settings().
    void settingsChanged();

private:
    template <typename T>
    void update(T CollageSlideshowSettings::*field, T value, void (CollageSlideshowSettingsStore::*changed)());
    void persist();

    Preferences &m_preferences;
    CollageSlideshowSettings m_settings;
    bool m_flowScrollReversed = false;
    bool m_flowScrollPaused = false;
    // Set while many fields are taken at once, so they are stored once at the end.
    bool m_isLoading = false;
};

} // namespace sorvane
