#include "slideshow/SlideshowGlobalSettings.h"

#include "EngineLog.h"
#include "slideshow/PhaseDelay.h"
#include "slideshow/Preferences.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace sorvane {

namespace {

template <typename Enum> Enum readRaw(const Preferences &preferences, const QString &key, Enum fallback)
{
    const std::optional<QString> raw = preferences.stringValue(key);
    return raw ? fromRaw<Enum>(*raw).value_or(fallback) : fallback;
}

double clampedPhaseDelay(double seconds)
{
    if (std::isnan(seconds))
        return PhaseDelay::defaultValue;
    return std::clamp(seconds, PhaseDelay::minimum, PhaseDelay::maximum);
}

} // namespace

SlideshowGlobalSettings::SlideshowGlobalSettings(Preferences &preferences, QObject *parent)
    : QObject(parent), m_preferences(preferences)
{
    m_controlScope = readRaw(preferences, controlScopeKey, ControlScope::all);
    m_escBehavior = readRaw(preferences, escBehaviorKey, EscBehavior::stopAll);
    m_duplicateAvoidance = readDuplicateAvoidance(preferences);
    m_syncMode = readRaw(preferences, syncModeKey, SyncMode::synchronized);
    m_phaseDelay = clampedPhaseDelay(preferences.numberValue(phaseDelayKey).value_or(PhaseDelay::defaultValue));
    m_phaseDelayDivideEvenly = preferences.boolValue(phaseDelayDivideEvenlyKey).value_or(false);
    const std::optional<qint64> screen = preferences.wholeNumberValue(firstMonitorScreenIDKey);
    if (screen && *screen >= 0 && *screen <= std::numeric_limits<quint32>::max())
        m_firstMonitorScreenID = quint32(*screen);
}

bool SlideshowGlobalSettings::readDuplicateAvoidance(const Preferences &preferences)
{
    return preferences.boolValue(duplicateAvoidanceKey).value_or(true);
}

bool SlideshowGlobalSettings::storedMultiMonitorTipShown(const Preferences &preferences)
{
    return preferences.boolValue(hasShownMultiMonitorTipKey).value_or(false);
}

// The value in memory is what counts: a preferences file that cannot be written
// costs the choice at the next start, never the running show.
void SlideshowGlobalSettings::store(const QString &key, const std::optional<PreferenceValue> &value)
{
    const std::optional<QString> failure = value ? m_preferences.setValue(key, *value) : m_preferences.remove(key);
    if (failure)
        qCWarning(lcEngine, "Could not save %s: %s", qUtf8Printable(key), qUtf8Printable(*failure));
}

template <typename T>
void SlideshowGlobalSettings::update(
    T &member, T value, const QString &key, const PreferenceValue &stored, void (SlideshowGlobalSettings::*changed)())
{
    if (member == value)
        return;
    member = value;
    store(key, stored);
    Q_EMIT(this->*changed)();
}

void SlideshowGlobalSettings::setControlScope(ControlScope scope)
{
    update(m_controlScope, scope, controlScopeKey, toRaw(scope), &SlideshowGlobalSettings::controlScopeChanged);
}

void SlideshowGlobalSettings::setEscBehavior(EscBehavior behavior)
{
    update(m_escBehavior, behavior, escBehaviorKey, toRaw(behavior), &SlideshowGlobalSettings::escBehaviorChanged);
}

void SlideshowGlobalSettings::setDuplicateAvoidance(bool on)
{
    update(m_duplicateAvoidance, on, duplicateAvoidanceKey, on, &SlideshowGlobalSettings::duplicateAvoidanceChanged);
}

void SlideshowGlobalSettings::setHasShownMultiMonitorTip(bool shown)
{
    // Written at once, even when unchanged: the member starts false whatever is stored.
    m_hasShownMultiMonitorTip = shown;
    store(hasShownMultiMonitorTipKey, shown);
}

void SlideshowGlobalSettings::setSyncMode(SyncMode mode)
{
    update(m_syncMode, mode, syncModeKey, toRaw(mode), &SlideshowGlobalSettings::syncModeChanged);
}

void SlideshowGlobalSettings::setPhaseDelay(double seconds)
{
    const double clamped = clampedPhaseDelay(seconds);
    update(m_phaseDelay, clamped, phaseDelayKey, clamped, &SlideshowGlobalSettings::phaseDelayChanged);
}

void SlideshowGlobalSettings::setPhaseDelayDivideEvenly(bool on)
{
    update(m_phaseDelayDivideEvenly, on, phaseDelayDivideEvenlyKey, on,
        &SlideshowGlobalSettings::phaseDelayDivideEvenlyChanged);
}

void SlideshowGlobalSettings::setFirstMonitorScreenID(std::optional<quint32> screenId)
{
    if (m_firstMonitorScreenID == screenId)
        return;
    m_firstMonitorScreenID = screenId;
    store(firstMonitorScreenIDKey, screenId ? std::optional<PreferenceValue>(qint64(*screenId)) : std::nullopt);
    Q_EMIT firstMonitorScreenIDChanged();
}

} // namespace sorvane
