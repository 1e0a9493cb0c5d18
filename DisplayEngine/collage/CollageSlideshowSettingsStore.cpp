#include "collage/CollageSlideshowSettingsStore.h"

#include "EngineLog.h"
#include "slideshow/Preferences.h"

#include <cmath>

namespace sorvane {
namespace {

template <size_t N>
const CollageSettingPreset *presetNamed(const std::array<CollageSettingPreset, N> &presets, const QString &label)
{
    for (const CollageSettingPreset &preset : presets) {
        if (label == preset.label)
            return &preset;
    }
    return nullptr;
}

// A later preset wins only when strictly nearer, so a tie keeps the earlier one.
template <size_t N> QString nearestLabel(const std::array<CollageSettingPreset, N> &presets, double value)
{
    const CollageSettingPreset *nearest = &presets.front();
    for (const CollageSettingPreset &preset : presets) {
        if (std::abs(value - preset.value) < std::abs(value - nearest->value))
            nearest = &preset;
    }
    return QString(nearest->label);
}

} // namespace

CollageSlideshowSettingsStore::CollageSlideshowSettingsStore(Preferences &preferences, QObject *parent)
    : QObject(parent), m_preferences(preferences), m_settings(CollageSlideshowSettings::load(preferences))
{
}

template <typename T>
void CollageSlideshowSettingsStore::update(
    T CollageSlideshowSettings::*field, T value, void (CollageSlideshowSettingsStore::*changed)())
{
    const bool differs = !(m_settings.*field == value);
    m_settings.*field = value;
    if (!m_isLoading)
        persist();
    if (differs) {
        Q_EMIT(this->*changed)();
        if (!m_isLoading)
            Q_EMIT settingsChanged();
    }
}

void CollageSlideshowSettingsStore::persist()
{
    if (const std::optional<QString> error = m_settings.save(m_preferences))
        qCWarning(lcEngine, "Could not save the collage settings: %s", qUtf8Printable(*error));
}

void CollageSlideshowSettingsStore::setSettings(const CollageSlideshowSettings &settings)
{
    const CollageSlideshowSettings before = m_settings;
    m_isLoading = true;
    setDefaultLayout(settings.defaultLayout);
    setImageChangeInterval(settings.imageChangeInterval);
    setShuffleVariedLayout(settings.shuffleVariedLayout);
    setVariedLayoutInterval(settings.variedLayoutInterval);
    setShowTileHoverControls(settings.showTileHoverControls);
    setFlowWeightMode(settings.flowWeightMode);
    setFlowOrientation(settings.flowOrientation);
    setFlowTilesPerChange(settings.flowTilesPerChange);
    setFlowStaggerSwaps(settings.flowStaggerSwaps);
    setFlowColumnAdjustment(settings.flowColumnAdjustment);
    setFlowInfiniteScroll(settings.flowInfiniteScroll);
    setFlowScrollBidirectional(settings.flowScrollBidirectional);
    setFlowScrollSpeed(settings.flowScrollSpeed);
    setFlowScrollPointerPause(settings.flowScrollPointerPause);
    setFlowAutoCycleTiles(settings.flowAutoCycleTiles);
    m_isLoading = false;
    persist();
    if (!(before == m_settings))
        Q_EMIT settingsChanged();
}

void CollageSlideshowSettingsStore::setDefaultLayout(CollageLayout layout)
{
    update(&CollageSlideshowSettings::defaultLayout, layout, &CollageSlideshowSettingsStore::defaultLayoutChanged);
}

void CollageSlideshowSettingsStore::setImageChangeInterval(double seconds)
{
    update(&CollageSlideshowSettings::imageChangeInterval, seconds,
        &CollageSlideshowSettingsStore::imageChangeIntervalChanged);
}

void CollageSlideshowSettingsStore::setShuffleVariedLayout(bool shuffle)
{
    update(&CollageSlideshowSettings::shuffleVariedLayout, shuffle,
        &CollageSlideshowSettingsStore::shuffleVariedLayoutChanged);
}

void CollageSlideshowSettingsStore::setVariedLayoutInterval(double seconds)
{
    update(&CollageSlideshowSettings::variedLayoutInterval, seconds,
        &CollageSlideshowSettingsStore::variedLayoutIntervalChanged);
}

void CollageSlideshowSettingsStore::setShowTileHoverControls(bool show)
{
    update(&CollageSlideshowSettings::showTileHoverControls, show,
        &CollageSlideshowSettingsStore::showTileHoverControlsChanged);
}

void CollageSlideshowSettingsStore::setFlowWeightMode(FlowWeightMode mode)
{
    update(&CollageSlideshowSettings::flowWeightMode, mode, &CollageSlideshowSettingsStore::flowWeightModeChanged);
}

void CollageSlideshowSettingsStore::setFlowOrientation(FlowOrientation orientation)
{
    update(&CollageSlideshowSettings::flowOrientation, orientation,
        &CollageSlideshowSettingsStore::flowOrientationChanged);
}

void CollageSlideshowSettingsStore::setFlowTilesPerChange(qint64 tiles)
{
    update(&CollageSlideshowSettings::flowTilesPerChange, tiles,
        &CollageSlideshowSettingsStore::flowTilesPerChangeChanged);
}

void CollageSlideshowSettingsStore::setFlowStaggerSwaps(bool stagger)
{
    update(
        &CollageSlideshowSettings::flowStaggerSwaps, stagger, &CollageSlideshowSettingsStore::flowStaggerSwapsChanged);
}

void CollageSlideshowSettingsStore::setFlowColumnAdjustment(qint64 adjustment)
{
    update(&CollageSlideshowSettings::flowColumnAdjustment, adjustment,
        &CollageSlideshowSettingsStore::flowColumnAdjustmentChanged);
}

void CollageSlideshowSettingsStore::setFlowInfiniteScroll(bool infinite)
{
    update(&CollageSlideshowSettings::flowInfiniteScroll, infinite,
        &CollageSlideshowSettingsStore::flowInfiniteScrollChanged);
}

void CollageSlideshowSettingsStore::setFlowScrollBidirectional(bool bidirectional)
{
    update(&CollageSlideshowSettings::flowScrollBidirectional, bidirectional,
        &CollageSlideshowSettingsStore::flowScrollBidirectionalChanged);
}

void CollageSlideshowSettingsStore::setFlowScrollSpeed(double speed)
{
    update(&CollageSlideshowSettings::flowScrollSpeed, speed, &CollageSlideshowSettingsStore::flowScrollSpeedChanged);
}

void CollageSlideshowSettingsStore::setFlowScrollPointerPause(double seconds)
{
    update(&CollageSlideshowSettings::flowScrollPointerPause, seconds,
        &CollageSlideshowSettingsStore::flowScrollPointerPauseChanged);
}

void CollageSlideshowSettingsStore::setFlowAutoCycleTiles(bool autoCycle)
{
    update(&CollageSlideshowSettings::flowAutoCycleTiles, autoCycle,
        &CollageSlideshowSettingsStore::flowAutoCycleTilesChanged);
}

void CollageSlideshowSettingsStore::setFlowScrollReversed(bool reversed)
{
    if (m_flowScrollReversed == reversed)
        return;
    m_flowScrollReversed = reversed;
    Q_EMIT flowScrollReversedChanged();
}

void CollageSlideshowSettingsStore::setFlowScrollPaused(bool paused)
{
    if (m_flowScrollPaused == paused)
        return;
    m_flowScrollPaused = paused;
    Q_EMIT flowScrollPausedChanged();
}

void CollageSlideshowSettingsStore::adjustFlowColumns(qint64 delta)
{
    qint64 sum = 0;
    // The bounds are tiny, so a sum past the integer's range lies beyond the
    // bound on the delta's side.
    const qint64 adjusted = __builtin_add_overflow(m_settings.flowColumnAdjustment, delta, &sum)
        ? (delta > 0 ? CollageSlideshowSettings::maxFlowColumnAdjustment
                     : CollageSlideshowSettings::minFlowColumnAdjustment)
        : CollageSlideshowSettings::clampFlowColumnAdjustment(sum);
    setFlowColumnAdjustment(adjusted);
}

void CollageSlideshowSettingsStore::toggle(Flag flag)
{
    switch (flag) {
    case Flag::shuffleVariedLayout:
        return setShuffleVariedLayout(!shuffleVariedLayout());
    case Flag::showTileHoverControls:
        return setShowTileHoverControls(!showTileHoverControls());
    case Flag::flowStaggerSwaps:
        return setFlowStaggerSwaps(!flowStaggerSwaps());
    case Flag::flowInfiniteScroll:
        return setFlowInfiniteScroll(!flowInfiniteScroll());
    case Flag::flowScrollBidirectional:
        return setFlowScrollBidirectional(!flowScrollBidirectional());
    case Flag::flowAutoCycleTiles:
        return setFlowAutoCycleTiles(!flowAutoCycleTiles());
    case Flag::flowScrollReversed:
        return setFlowScrollReversed(!flowScrollReversed());
    case Flag::flowScrollPaused:
        return setFlowScrollPaused(!flowScrollPaused());
    }
}

bool CollageSlideshowSettingsStore::selectFlowScrollSpeed(const QString &label)
{
    const CollageSettingPreset *preset = presetNamed(flowScrollSpeedPresets, label);
    if (preset)
        setFlowScrollSpeed(preset->value);
    return preset != nullptr;
}

bool CollageSlideshowSettingsStore::selectFlowScrollPointerPause(const QString &label)
{
    const CollageSettingPreset *preset = presetNamed(flowScrollPointerPausePresets, label);
    if (preset)
        setFlowScrollPointerPause(preset->value);
    return preset != nullptr;
}

QString CollageSlideshowSettingsStore::flowScrollSpeedLabel(double speed)
{
    return nearestLabel(flowScrollSpeedPresets, speed);
}

QString CollageSlideshowSettingsStore::flowScrollPointerPauseLabel(double seconds)
{
    return nearestLabel(flowScrollPointerPausePresets, seconds);
}

} // namespace sorvane
