#pragma once

#include "slideshow/ControlScope.h"
#include "slideshow/EscBehavior.h"
#include "slideshow/PreferenceValue.h"
#include "slideshow/SyncMode.h"

#include <QObject>

#include <optional>

namespace sorvane {

class Preferences;

// The choices that concern all slideshow windows together. Each member is read from
// its own preference key when the object is made and written back when it changes.
// A write that fails is logged and the value stays in memory, so the show goes on.
// Main thread only.
class SlideshowGlobalSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(sorvane::ControlScope controlScope READ controlScope WRITE setControlScope NOTIFY controlScopeChanged)
    Q_PROPERTY(sorvane::EscBehavior escBehavior READ escBehavior WRITE setEscBehavior NOTIFY escBehaviorChanged)
    Q_PROPERTY(
        bool duplicateAvoidance READ duplicateAvoidance WRITE setDuplicateAvoidance NOTIFY duplicateAvoidanceChanged)
    Q_PROPERTY(sorvane::SyncMode syncMode READ syncMode WRITE setSyncMode NOTIFY syncModeChanged)
    Q_PROPERTY(double phaseDelay READ phaseDelay WRITE setPhaseDelay NOTIFY phaseDelayChanged)
    Q_PROPERTY(bool phaseDelayDivideEvenly READ phaseDelayDivideEvenly WRITE setPhaseDelayDivideEvenly NOTIFY
            phaseDelayDivideEvenlyChanged)
    Q_PROPERTY(std::optional<quint32> firstMonitorScreenID READ firstMonitorScreenID WRITE setFirstMonitorScreenID
            NOTIFY firstMonitorScreenIDChanged)

public:
    static inline const QString controlScopeKey = QStringLiteral("slideshow.globalSettings.controlScope");
    static inline const QString escBehaviorKey = QStringLiteral("slideshow.globalSettings.escBehavior");
    static inline const QString duplicateAvoidanceKey = QStringLiteral("slideshow.globalSettings.duplicateAvoidance");
    static inline const QString hasShownMultiMonitorTipKey
        = QStringLiteral("slideshow.globalSettings.hasShownMultiMonitorTip");
    static inline const QString syncModeKey = QStringLiteral("slideshow.globalSettings.syncMode");
    static inline const QString phaseDelayKey = QStringLiteral("slideshow.globalSettings.phaseDelay");
    static inline const QString phaseDelayDivideEvenlyKey
        = QStringLiteral("slideshow.globalSettings.phaseDelayDivideEvenly");
    static inline const QString firstMonitorScreenIDKey
        = QStringLiteral("slideshow.globalSettings.firstMonitorScreenID");

    // Reads every key; `preferences` must outlive this object.
    explicit SlideshowGlobalSettings(Preferences &preferences, QObject *parent = nullptr);

    // The duplicate-avoidance preference as a step reads it: missing or not a Boolean is on.
    static bool readDuplicateAvoidance(const Preferences &preferences);
    // Whether the multi-monitor tip was shown in an earlier run (the member itself starts
    // false in every run).
    static bool storedMultiMonitorTipShown(const Preferences &preferences);

    ControlScope controlScope() const { return m_controlScope; }
    EscBehavior escBehavior() const { return m_escBehavior; }
    bool duplicateAvoidance() const { return m_duplicateAvoidance; }
    // Not published: it only decides whether a tip is shown once.
    bool hasShownMultiMonitorTip() const { return m_hasShownMultiMonitorTip; }
    SyncMode syncMode() const { return m_syncMode; }
    double phaseDelay() const { return m_phaseDelay; }
    bool phaseDelayDivideEvenly() const { return m_phaseDelayDivideEvenly; }
    std::optional<quint32> firstMonitorScreenID() const { return m_firstMonitorScreenID; }

    void setControlScope(ControlScope scope);
    void setEscBehavior(EscBehavior behavior);
    void setDuplicateAvoidance(bool on);
    void setHasShownMultiMonitorTip(bool shown);
    void setSyncMode(SyncMode mode);
    // Held within PhaseDelay's bounds.
    void setPhaseDelay(double seconds);
    void setPhaseDelayDivideEvenly(bool on);
    void setFirstMonitorScreenID(std::optional<quint32> screenId);

Q_SIGNALS:
    void controlScopeChanged();
    void escBehaviorChanged();
    void duplicateAvoidanceChanged();
    void syncModeChanged();
    void phaseDelayChanged();
    void phaseDelayDivideEvenlyChanged();
    void firstMonitorScreenIDChanged();

private:
    // A write that fails is logged; the value in memory is what counts.
    void store(const QString &key, const std::optional<PreferenceValue> &value);
    template <typename T>
    void update(T &member, T value, const QString &key, const PreferenceValue &stored,
        void (SlideshowGlobalSettings::*changed)());

    Preferences &m_preferences;
    ControlScope m_controlScope = ControlScope::all;
    EscBehavior m_escBehavior = EscBehavior::stopAll;
    bool m_duplicateAvoidance = true;
    bool m_hasShownMultiMonitorTip = false;
    SyncMode m_syncMode = SyncMode::synchronized;
    double m_phaseDelay = 0.5;
    bool m_phaseDelayDivideEvenly = false;
    std::optional<quint32> m_firstMonitorScreenID;
};

} // namespace sorvane
