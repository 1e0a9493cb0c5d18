import QtQuick
import Sorvane.Views

// One screen of the show: the slide or this screen's wall, the brand's logo, the caption
// and the controls panel. In the classic style every screen shows the same item.
Window {
    id: window

    required property var slides   // SlideModel
    required property var controls // PlayerControlsModel
    required property bool primary
    required property var walls    // PlayerCollageWall
    // This screen's wall (CollageWallModel) while a wall style is on, else null.
    property var wall: null

    title: "SorvanePlayer"
    color: slides.appearance.background

    SlideView {
        id: slideView
        anchors.fill: parent
        visible: window.wall === null
        slide: window.slides.slide
        preloadSource: window.slides.preloadSource
        scaling: window.slides.appearance.scaling
        filter: window.slides.appearance.filter
        crossfade: window.slides.appearance.crossfade
        transitionSeconds: window.slides.appearance.transitionSeconds
        paused: window.slides.paused
        muted: !window.primary
        onPresented: serial => window.slides.reportPresented(serial)
        onEnded: serial => window.slides.reportEnded(serial)
        onFailed: (serial, reason) => window.slides.reportFailed(serial, reason)
    }

    // A new wall gets a new view, which starts it (and the old one captures its own on the way out).
    Repeater {
        model: window.wall !== null ? [window.wall] : []
        delegate: CollageRenderer {
            required property var modelData
            width: window.width
            height: window.height
            wall: modelData
            onTileShown: window.walls.tileShown()
        }
    }

    BrandOverlayItem {
        source: window.slides.overlay.visible ? window.slides.overlay.source : ""
        opacity: window.slides.overlay.opacity
        area: window.slides.overlay.visible ? window.slides.overlayRect(window.width, window.height) : Qt.rect(0, 0, 0, 0)
        sourceSize: Qt.size(Math.ceil(area.width * Screen.devicePixelRatio), Math.ceil(area.height * Screen.devicePixelRatio))
    }

    SlideCaption {
        anchors.left: parent.left
        anchors.bottom: parent.bottom
        anchors.leftMargin: Math.round(Math.min(window.width, window.height) * 0.02)
        anchors.bottomMargin: Math.round(Math.min(window.width, window.height) * 0.02)
        visible: window.wall === null
        text: window.slides.appearance.showCaption ? window.slides.slide.caption : ""
        progress: window.slides.appearance.showProgress ? window.slides.slide.progress : ""
        // The panel takes this place while it is up.
        opacity: panel.shown ? 0 : 1
        Behavior on opacity { NumberAnimation { duration: 200 } }
    }

    ControlsPanel {
        id: panel
        controls: window.controls
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 48
    }
}
