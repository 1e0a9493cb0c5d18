#include "views/SlideshowViewState.h"

#include "bundle/BundleWireValues.h"
#include "slideshow/FileNameLine.h"
#include "slideshow/SlideshowActionDispatch.h"
#include "slideshow/SlideshowGlobalSettings.h"
#include "slideshow/SlideshowHotkeyOverlay.h"
#include "slideshow/SlideshowManager.h"

#include <algorithm>

namespace sorvane {

namespace {

QVariant slideOf(const std::optional<ImageItem> &item)
{
    if (!item)
        return {};
    const bool isVideo = item->mediaType() == MediaType::video;
    return QVariantMap {
        {QStringLiteral("source"), item->url()},
        {QStringLiteral("posterSource"), QUrl()},
        {QStringLiteral("isVideo"), isVideo},
        {QStringLiteral("isAnimated"), !isVideo && item->isAnimated()},
        {QStringLiteral("serial"), item->id().toString(QUuid::WithoutBraces)},
        {QStringLiteral("id"), item->id().toString(QUuid::WithoutBraces)},
    };
}

QString escaped(const QString &text)
{
    return text.toHtmlEscaped();
}

} // namespace

SlideshowViewState::SlideshowViewState(QObject *parent) : QObject(parent) { }

SlideshowViewModel *SlideshowViewState::viewModel() const
{
    return m_viewModel;
}

void SlideshowViewState::setViewModel(SlideshowViewModel *viewModel)
{
    if (m_viewModel == viewModel)
        return;
    for (const QMetaObject::Connection &connection : std::as_const(m_connections))
        disconnect(connection);
    m_connections.clear();
    m_viewModel = viewModel;
    connectModel();
    Q_EMIT viewModelChanged();
    Q_EMIT primarySlideChanged();
    Q_EMIT secondarySlideChanged();
    Q_EMIT upcomingStillChanged();
    Q_EMIT settingsChanged();
    Q_EMIT filterChanged();
    Q_EMIT fileNameLineChanged();
    Q_EMIT scopeChanged();
    Q_EMIT collageWallChanged();
}

void SlideshowViewState::connectModel()
{
    SlideshowViewModel *model = m_viewModel;
    if (!model)
        return;
    using M = SlideshowViewModel;
    auto relay = [this, model](auto signal, auto ours) { m_connections.append(connect(model, signal, this, ours)); };
    relay(&M::primaryImageChanged, &SlideshowViewState::primarySlideChanged);
    relay(&M::secondaryImageChanged, &SlideshowViewState::secondarySlideChanged);
    relay(&M::settingsChanged, &SlideshowViewState::settingsChanged);
    relay(&M::settingsChanged, &SlideshowViewState::fileNameLineChanged);
    relay(&M::imageFilterChanged, &SlideshowViewState::filterChanged);
    relay(&M::currentIndexChanged, &SlideshowViewState::fileNameLineChanged);
    relay(&M::imagesChanged, &SlideshowViewState::fileNameLineChanged);
    relay(&M::currentIndexChanged, &SlideshowViewState::upcomingStillChanged);
    relay(&M::imagesChanged, &SlideshowViewState::upcomingStillChanged);
    relay(&M::displayModeChanged, &SlideshowViewState::collageWallChanged);
    m_connections.append(connect(model, &QObject::destroyed, this, [this] { setViewModel(nullptr); }));
    if (SlideshowManager *manager = model->manager()) {
        m_connections.append(connect(manager->globalSettings(), &SlideshowGlobalSettings::controlScopeChanged, this,
            &SlideshowViewState::scopeChanged));
    }
}

QVariant SlideshowViewState::primarySlide() const
{
    return m_viewModel ? slideOf(m_viewModel->primaryImage()) : QVariant();
}

QVariant SlideshowViewState::secondarySlide() const
{
    return m_viewModel ? slideOf(m_viewModel->secondaryImage()) : QVariant();
}

QUrl SlideshowViewState::upcomingStill() const
{
    if (!m_viewModel)
        return {};
    const QList<ImageItem> &images = m_viewModel->images();
    if (images.size() < 2)
        return {};
    const ImageItem &next = images.at((std::max(m_viewModel->currentIndex(), 0) + 1) % images.size());
    if (next.mediaType() == MediaType::video || next.isAnimated())
        return {};
    return next.url();
}

QString SlideshowViewState::scaling() const
{
    return toWire(m_viewModel ? m_viewModel->settings().imageScaling : ImageScalingMode::fitToScreen);
}

QString SlideshowViewState::filter() const
{
    return toWire(m_viewModel ? m_viewModel->imageFilter() : ImageFilter::none);
}

QColor SlideshowViewState::backgroundColor() const
{
    // A colour the settings cannot name is drawn black rather than transparent.
    const QColor colour = m_viewModel ? QColor::fromString(m_viewModel->settings().backgroundColor) : QColor();
    return colour.isValid() ? colour : QColor(Qt::black);
}

bool SlideshowViewState::showImageInfo() const
{
    return m_viewModel && m_viewModel->settings().showImageInfo;
}

bool SlideshowViewState::alwaysShowImageInfo() const
{
    return m_viewModel && m_viewModel->settings().alwaysShowImageInfo;
}

bool SlideshowViewState::showProgress() const
{
    return m_viewModel && m_viewModel->settings().showProgress;
}

QString SlideshowViewState::controlSize() const
{
    const QString size = m_viewModel ? m_viewModel->settings().controlSize : QString();
    const bool known = size == u"small" || size == u"medium" || size == u"large";
    return known ? size : QStringLiteral("medium");
}

double SlideshowViewState::controlOpacity() const
{
    const double opacity = m_viewModel ? m_viewModel->settings().controlOpacity : 0.4;
    return std::isfinite(opacity) ? std::clamp(opacity, 0.0, 1.0) : 0.4;
}

int SlideshowViewState::transitionStyle() const
{
    return static_cast<int>(m_viewModel ? m_viewModel->settings().transitionStyle : TransitionStyle::crossFade);
}

QString SlideshowViewState::fileNameLine() const
{
    const std::optional<ImageItem> item = m_viewModel ? m_viewModel->currentItem() : std::nullopt;
    return item ? FileNameLine::text(*item, m_viewModel->settings().fileDisplayFormat) : QString();
}

QVariantList SlideshowViewState::shortcutRows() const
{
    const KeyBindings bindings = m_viewModel ? m_viewModel->settings().keyBindings : defaultKeyBindings();
    QVariantList rows;
    for (const ShortcutRow &row : SlideshowHotkeyOverlay::rows(bindings))
        rows.append(QVariantMap {{QStringLiteral("key"), row.key}, {QStringLiteral("description"), row.description}});
    return rows;
}

QString SlideshowViewState::shortcutFooter() const
{
    const KeyBindings bindings = m_viewModel ? m_viewModel->settings().keyBindings : defaultKeyBindings();
    // Every other part between the ** marks is bold; the parts are escaped, key text included.
    const QStringList parts = SlideshowHotkeyOverlay::footer(bindings).split(QStringLiteral("**"));
    QString styled;
    for (qsizetype i = 0; i < parts.size(); ++i)
        styled += i % 2 ? QStringLiteral("<b>") + escaped(parts[i]) + QStringLiteral("</b>") : escaped(parts[i]);
    return styled;
}

QString SlideshowViewState::scopeLabel() const
{
    SlideshowManager *manager = m_viewModel ? m_viewModel->manager() : nullptr;
    return manager ? shortLabel(manager->globalSettings()->controlScope()) : QString();
}

CollageWallModel *SlideshowViewState::collageWall() const
{
    return m_viewModel ? m_viewModel->collageWall() : nullptr;
}

void SlideshowViewState::perform(int action)
{
    if (!m_viewModel || action < 0 || action >= static_cast<int>(allSlideshowActions.size()))
        return;
    const SlideshowAction chosen = allSlideshowActions[static_cast<size_t>(action)];
    if (SlideshowManager *manager = m_viewModel->manager()) {
        manager->perform(m_viewModel->id(), chosen);
        return;
    }
    // A window on its own does for itself what the manager would do for it.
    switch (chosen) {
    case SlideshowAction::startStop:
        m_viewModel->togglePlayPause();
        break;
    case SlideshowAction::toggleFullScreen:
        m_viewModel->setFullScreen(!m_viewModel->isFullScreen());
        break;
    case SlideshowAction::moveToTrash:
        m_viewModel->moveCurrentToTrash();
        break;
    default:
        SlideshowActionDispatch::apply(*m_viewModel, chosen);
    }
}

QList<SlideshowViewModel *> SlideshowViewState::scopedModels() const
{
    SlideshowManager *manager = m_viewModel ? m_viewModel->manager() : nullptr;
    if (!manager || manager->globalSettings()->controlScope() == ControlScope::focusedOnly)
        return m_viewModel ? QList<SlideshowViewModel *> {m_viewModel.data()} : QList<SlideshowViewModel *> {};
    QList<SlideshowViewModel *> models;
    for (const QUuid &id : manager->activeSlideshowIds()) {
        if (SlideshowViewModel *model = manager->viewModel(id))
            models.append(model);
    }
    return models;
}

void SlideshowViewState::chooseTransitionStyle(int style)
{
    if (style < 0 || style >= static_cast<int>(allTransitionStyles.size()))
        return;
    for (SlideshowViewModel *model : scopedModels()) {
        SlideshowSettings settings = model->settings();
        settings.transitionStyle = allTransitionStyles[static_cast<size_t>(style)];
        model->setSettings(settings);
    }
}

void SlideshowViewState::cycleControlScope()
{
    SlideshowManager *manager = m_viewModel ? m_viewModel->manager() : nullptr;
    if (!manager)
        return;
    const auto next = (static_cast<size_t>(manager->globalSettings()->controlScope()) + 1) % allControlScopes.size();
    manager->setControlScope(allControlScopes[next]);
}

QVariantList SlideshowViewState::transitionChoices() const
{
    QVariantList choices;
    for (const TransitionStyle style : allTransitionStyles)
        choices.append(
            QVariantMap {{QStringLiteral("style"), static_cast<int>(style)}, {QStringLiteral("label"), label(style)}});
    return choices;
}

QString SlideshowViewState::filterLabel(int filter) const
{
    static const QString labels[]
        = {QStringLiteral("Off"), QStringLiteral("Black & White"), QStringLiteral("Sepia"), QStringLiteral("Vintage")};
    return filter >= 0 && filter < 4 ? labels[filter] : QString();
}

} // namespace sorvane
