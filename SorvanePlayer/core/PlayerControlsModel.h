#pragma once

#include "core/PlayerActionHandlers.h"
#include "core/PlayerStyle.h"

#include <QList>
#include <QObject>
#include <QRectF>
#include <QString>
#include <QVariantList>

namespace sorvane {

// One button of the controls panel, as the view draws it.
struct ControlButton {
    QString symbol; // system symbol name of the icon
    QString label;
    bool selected = false; // the style in use
    PlayerAction action = PlayerAction::exit;

    bool operator==(const ControlButton &) const = default;
};

// What the controls panel shows and where its buttons lead. The engine owns the
// truth: it sets isPaused and style; the buttons only forward to the handlers.
class PlayerControlsModel : public QObject, public PlayerActionHandlers {
    Q_OBJECT
    Q_PROPERTY(bool isPaused READ isPaused WRITE setPaused NOTIFY isPausedChanged)
    Q_PROPERTY(QString style READ styleRaw WRITE setStyleRaw NOTIFY styleChanged)
    Q_PROPERTY(bool hasShow READ hasShow WRITE setHasShow NOTIFY hasShowChanged)
    Q_PROPERTY(bool visible READ isVisible WRITE setVisible NOTIFY visibleChanged)
    // Each entry: symbol, label, selected, action (the name of the invokable to call:
    // "previous", "togglePause", "next", "chooseStyle" or "exit") and style (the raw
    // style for chooseStyle, empty otherwise).
    Q_PROPERTY(QVariantList buttons READ buttonList NOTIFY buttonsChanged)
    // The panel's area in global coordinates while the pointer rests on it, else empty.
    Q_PROPERTY(QRectF stripRect READ stripRect WRITE setStripRect NOTIFY stripRectChanged)

public:
    explicit PlayerControlsModel(QObject *parent = nullptr);

    bool isPaused() const { return m_paused; }
    void setPaused(bool paused);

    PlayerStyle style() const { return m_style; }
    void setStyle(PlayerStyle style);
    QString styleRaw() const { return toRaw(m_style); }
    // Unknown raw values are ignored.
    void setStyleRaw(const QString &raw);

    bool hasShow() const { return m_hasShow; }
    void setHasShow(bool hasShow);

    bool isVisible() const { return m_visible; }
    void setVisible(bool visible);

    QRectF stripRect() const { return m_strip; }
    void setStripRect(const QRectF &strip);

    // The panel's buttons in display order.
    const QList<ControlButton> &buttons() const { return m_buttons; }
    QVariantList buttonList() const;

    Q_INVOKABLE void togglePause();
    Q_INVOKABLE void next();
    Q_INVOKABLE void previous();
    // Unknown raw values are ignored.
    Q_INVOKABLE void chooseStyle(const QString &raw);
    Q_INVOKABLE void exit();

Q_SIGNALS:
    void isPausedChanged();
    void styleChanged();
    void hasShowChanged();
    void visibleChanged();
    void buttonsChanged();
    void stripRectChanged();

private:
    void rebuildButtons();

    bool m_paused = false;
    PlayerStyle m_style = PlayerStyle::photoWall;
    bool m_hasShow = false;
    bool m_visible = false;
    QRectF m_strip;
    QList<ControlButton> m_buttons;
};

} // namespace sorvane
