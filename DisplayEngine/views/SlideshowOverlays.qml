import QtQuick
import Sorvane.Views

// What a slideshow window draws over its slides: the file-name and progress line, the
// controls, and the scope and filter notices. The host adds the shortcut card, the
// multi-screen tip, the collage intro and the brand logo where it wants them.
Item {
    id: overlays

    required property SlideshowViewModel viewModel
    required property SlideshowViewState viewState
    // Without a manager there are no scope or filter notices and no scope button.
    property SlideshowManager manager: null

    signal exitRequested()

    readonly property real unit: Math.max(1, Math.min(width, height) / 900)
    readonly property real margin: Math.round(24 * unit)
    // The line stays when asked to, otherwise it comes and goes with the controls.
    readonly property bool lineShown: viewState.alwaysShowImageInfo || viewModel.showControls

    SlideCaption {
        id: caption
        objectName: "caption"
        anchors.left: parent.left
        anchors.bottom: parent.bottom
        anchors.margins: overlays.margin
        text: overlays.viewState.showImageInfo ? overlays.viewState.fileNameLine : ""
        progress: overlays.viewState.showProgress ? overlays.viewModel.progressText : ""
        opacity: overlays.lineShown ? 1 : 0
        Behavior on opacity { NumberAnimation { duration: 220 } }
    }

    SlideshowControls {
        objectName: "controls"
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: caption.visible ? caption.height + 2 * overlays.margin : overlays.margin
        viewModel: overlays.viewModel
        viewState: overlays.viewState
        onExitRequested: overlays.exitRequested()
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: overlays.margin * 2
        spacing: Math.round(10 * overlays.unit)
        SlideshowToast {
            objectName: "scopeNotice"
            anchors.horizontalCenter: parent.horizontalCenter
            unit: overlays.unit
            text: overlays.manager ? overlays.manager.scopeChangeMessage : ""
        }
        SlideshowToast {
            objectName: "filterNotice"
            anchors.horizontalCenter: parent.horizontalCenter
            unit: overlays.unit
            text: overlays.manager ? overlays.manager.filterChangeMessage : ""
        }
    }
}
