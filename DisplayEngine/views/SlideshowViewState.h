#pragma once

#include "collage/CollageWallModel.h"
#include "slideshow/SlideshowAction.h"
#include "slideshow/SlideshowViewModel.h"

#include <QColor>
#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace sorvane {

// What the slideshow views read from a view model in the shapes QML can use: the two layers
// as SlideLayer slides, the settings the views draw with, the file-name line and the shortcut
// overlay's texts; and the controls' commands, routed through the manager when there is one
// so that the control scope decides which windows hear them.
//   SlideshowViewState { id: state; viewModel: root.viewModel }
class SlideshowViewState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(sorvane::SlideshowViewModel *viewModel READ viewModel WRITE setViewModel NOTIFY viewModelChanged)
    // {source, posterSource, isVideo, isAnimated, serial, id} or null when the layer is empty.
    Q_PROPERTY(QVariant primarySlide READ primarySlide NOTIFY primarySlideChanged)
    Q_PROPERTY(QVariant secondarySlide READ secondarySlide NOTIFY secondarySlideChanged)
    // The still one step ahead, decoded early so that its transition never starts on an
    // empty layer; empty when that item is a video or an animation, or there is none.
    Q_PROPERTY(QUrl upcomingStill READ upcomingStill NOTIFY upcomingStillChanged)
    // Wire values of SlideSource: "fit_to_screen", ...; "none", "sepia", ...
    Q_PROPERTY(QString scaling READ scaling NOTIFY settingsChanged)
    Q_PROPERTY(QString filter READ filter NOTIFY filterChanged)
    Q_PROPERTY(QColor backgroundColor READ backgroundColor NOTIFY settingsChanged)
    Q_PROPERTY(bool showImageInfo READ showImageInfo NOTIFY settingsChanged)
    Q_PROPERTY(bool alwaysShowImageInfo READ alwaysShowImageInfo NOTIFY settingsChanged)
    Q_PROPERTY(bool showProgress READ showProgress NOTIFY settingsChanged)
    // "small", "medium" or "large".
    Q_PROPERTY(QString controlSize READ controlSize NOTIFY settingsChanged)
    Q_PROPERTY(double controlOpacity READ controlOpacity NOTIFY settingsChanged)
    Q_PROPERTY(int transitionStyle READ transitionStyle NOTIFY settingsChanged)
    Q_PROPERTY(QString fileNameLine READ fileNameLine NOTIFY fileNameLineChanged)
    // [{key, description}], the eight lines of the keyboard-shortcut overlay.
    Q_PROPERTY(QVariantList shortcutRows READ shortcutRows NOTIFY settingsChanged)
    // The footer as styled text, its key in bold.
    Q_PROPERTY(QString shortcutFooter READ shortcutFooter NOTIFY settingsChanged)
    // The control bar's word for the scope ("Independent", ...); empty without a manager.
    Q_PROPERTY(QString scopeLabel READ scopeLabel NOTIFY scopeChanged)
    // The wall the view model runs in collage mode; null otherwise.
    Q_PROPERTY(sorvane::CollageWallModel *collageWall READ collageWall NOTIFY collageWallChanged)

public:
    explicit SlideshowViewState(QObject *parent = nullptr);

    SlideshowViewModel *viewModel() const;
    void setViewModel(SlideshowViewModel *viewModel);

    QVariant primarySlide() const;
    QVariant secondarySlide() const;
    QUrl upcomingStill() const;
    QString scaling() const;
    QString filter() const;
    QColor backgroundColor() const;
    bool showImageInfo() const;
    bool alwaysShowImageInfo() const;
    bool showProgress() const;
    QString controlSize() const;
    double controlOpacity() const;
    int transitionStyle() const;
    QString fileNameLine() const;
    QVariantList shortcutRows() const;
    QString shortcutFooter() const;
    QString scopeLabel() const;
    CollageWallModel *collageWall() const;

    // A bound action (Slideshow.Action) as if its key were pressed in this window.
    Q_INVOKABLE void perform(int action);
    // The transition style (Slideshow.TransitionStyle) of every window the scope reaches.
    Q_INVOKABLE void chooseTransitionStyle(int style);
    // Independent → linked → mirror → independent.
    Q_INVOKABLE void cycleControlScope();
    // [{style, label}] for the transition menu, in the order of the styles.
    Q_INVOKABLE QVariantList transitionChoices() const;
    // "Off", "Black & White", ... for Slideshow.ImageFilter.
    Q_INVOKABLE QString filterLabel(int filter) const;

Q_SIGNALS:
    void viewModelChanged();
    void primarySlideChanged();
    void secondarySlideChanged();
    void upcomingStillChanged();
    void settingsChanged();
    void filterChanged();
    void fileNameLineChanged();
    void scopeChanged();
    void collageWallChanged();

private:
    void connectModel();
    QList<SlideshowViewModel *> scopedModels() const;

    QPointer<SlideshowViewModel> m_viewModel;
    QList<QMetaObject::Connection> m_connections;
};

} // namespace sorvane
