#include "core/PlayerControlsModel.h"

#include <QVariantMap>

namespace sorvane {

namespace {

QString invokableName(PlayerAction action)
{
    switch (action) {
    case PlayerAction::exit:
        return QStringLiteral("exit");
    case PlayerAction::togglePause:
        return QStringLiteral("togglePause");
    case PlayerAction::next:
        return QStringLiteral("next");
    case PlayerAction::previous:
        return QStringLiteral("previous");
    case PlayerAction::stylePhotoWall:
    case PlayerAction::styleMemoryTable:
    case PlayerAction::styleClassic:
        return QStringLiteral("chooseStyle");
    }
    return {};
}

} // namespace

PlayerControlsModel::PlayerControlsModel(QObject *parent) : QObject(parent)
{
    rebuildButtons();
}

void PlayerControlsModel::setPaused(bool paused)
{
    if (m_paused == paused)
        return;
    m_paused = paused;
    rebuildButtons();
    Q_EMIT isPausedChanged();
    Q_EMIT buttonsChanged();
}

void PlayerControlsModel::setStyle(PlayerStyle style)
{
    if (m_style == style)
        return;
    m_style = style;
    rebuildButtons();
    Q_EMIT styleChanged();
    Q_EMIT buttonsChanged();
}

void PlayerControlsModel::setStyleRaw(const QString &raw)
{
    if (const std::optional<PlayerStyle> style = playerStyleFromRaw(raw))
        setStyle(*style);
}

void PlayerControlsModel::setHasShow(bool hasShow)
{
    if (m_hasShow == hasShow)
        return;
    m_hasShow = hasShow;
    Q_EMIT hasShowChanged();
}

void PlayerControlsModel::setVisible(bool visible)
{
    if (m_visible == visible)
        return;
    m_visible = visible;
    Q_EMIT visibleChanged();
}

void PlayerControlsModel::rebuildButtons()
{
    const auto styleButton = [this](const char *symbol, const char *label, PlayerStyle style) {
        return ControlButton {
            QString::fromLatin1(symbol), QString::fromLatin1(label), m_style == style, styleAction(style)};
    };
    m_buttons = {
        {QStringLiteral("backward.end.fill"), QStringLiteral("Previous"), false, PlayerAction::previous},
        m_paused
            ? ControlButton {QStringLiteral("play.fill"), QStringLiteral("Play"), false, PlayerAction::togglePause}
            : ControlButton {QStringLiteral("pause.fill"), QStringLiteral("Pause"), false, PlayerAction::togglePause},
        {QStringLiteral("forward.end.fill"), QStringLiteral("Next"), false, PlayerAction::next},
        styleButton("rectangle.fill", "Classic", PlayerStyle::classic),
        styleButton("square.grid.3x3.fill", "Photo Wall", PlayerStyle::photoWall),
        styleButton("photo.on.rectangle.angled", "Memory Table", PlayerStyle::memoryTable),
        {QStringLiteral("xmark"), QStringLiteral("Exit"), false, PlayerAction::exit},
    };
}

QVariantList PlayerControlsModel::buttonList() const
{
    QVariantList list;
    list.reserve(m_buttons.size());
    for (const ControlButton &button : m_buttons) {
        const std::optional<PlayerStyle> style = styleOf(button.action);
        list.append(QVariantMap {
            {QStringLiteral("symbol"), button.symbol},
            {QStringLiteral("label"), button.label},
            {QStringLiteral("selected"), button.selected},
            {QStringLiteral("action"), invokableName(button.action)},
            {QStringLiteral("style"), style ? toRaw(*style) : QString()},
        });
    }
    return list;
}

void PlayerControlsModel::togglePause()
{
    perform(PlayerAction::togglePause);
}

void PlayerControlsModel::next()
{
    perform(PlayerAction::next);
}

void PlayerControlsModel::previous()
{
    perform(PlayerAction::previous);
}

void PlayerControlsModel::chooseStyle(const QString &raw)
{
    if (const std::optional<PlayerStyle> style = playerStyleFromRaw(raw))
        perform(styleAction(*style));
}

void PlayerControlsModel::exit()
{
    perform(PlayerAction::exit);
}

void PlayerControlsModel::setStripRect(const QRectF &strip)
{
    if (strip == m_strip)
        return;
    m_strip = strip;
    Q_EMIT stripRectChanged();
}

} // namespace sorvane
