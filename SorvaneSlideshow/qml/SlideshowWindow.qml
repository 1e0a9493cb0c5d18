import QtQuick
import Sorvane.Views

// One slideshow window: the slides (or the wall), the pointer's gestures, the controls and
// overlays, and the one dialog. Keys never reach QML: the application routes them.
Window {
    id: root

    required property SlideshowViewModel viewModel
    required property SlideshowManager manager
    required property var bridge
    required property string windowId

    title: "Sorvane Slideshow"
    color: "black"

    // Beneath the views, so that a wall's tiles take their own clicks first.
    MouseArea {
        id: gestures
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        property point last

        onPressed: mouse => {
            last = Qt.point(mouse.x, mouse.y)
            if (mouse.button === Qt.RightButton && root.bridge.showsVideo(root.viewModel))
                videoMenu.openAt(mouse.x, mouse.y)
        }
        onPositionChanged: mouse => {
            if ((mouse.buttons & Qt.LeftButton) && root.viewModel.zoomLevel > 1)
                root.viewModel.pan(mouse.x - last.x, mouse.y - last.y)
            last = Qt.point(mouse.x, mouse.y)
        }
        onDoubleClicked: root.viewModel.smartZoom()
        // In points, as a trackpad reports them; a wheel's notch (15 degrees) counts as 15.
        onWheel: wheel => root.viewModel.scrollZoom(wheel.pixelDelta.y !== 0 ? wheel.pixelDelta.y
                                                                             : wheel.angleDelta.y / 8)
    }

    PinchHandler {
        target: null
        onActiveScaleChanged: root.viewModel.pinchChanged(activeScale)
        onActiveChanged: if (!active) root.viewModel.pinchEnded()
    }

    SlideshowImageViews {
        id: views
        anchors.fill: parent
        viewModel: root.viewModel
    }

    SlideshowOverlays {
        id: overlays
        anchors.fill: parent
        viewModel: root.viewModel
        viewState: views.viewState
        manager: root.manager
    }

    MultiMonitorTip {
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.margins: overlays.margin
        unit: overlays.unit
        visible: root.bridge.tipWindowId === root.windowId
        onDismissed: root.bridge.dismissTip()
    }

    ShortcutOverlay {
        visible: root.bridge.shortcutsWindowId === root.windowId
        rows: views.viewState.shortcutRows
        footer: views.viewState.shortcutFooter
        onGotIt: root.bridge.hideShortcuts()
    }

    VideoPlayersMenu {
        id: videoMenu
        anchors.fill: parent
        players: root.bridge.videoPlayerNames
        onOpenedChanged: root.bridge.contextMenuOpen(root.viewModel, opened)
        onPlayerChosen: index => root.bridge.openVideo(index, root.viewModel)
    }

    TrashConfirmation {
        anchors.fill: parent
        visible: root.bridge.trashWindowId === root.windowId
        fileName: root.bridge.trashFileName
        onAnswered: confirmed => root.bridge.answerTrash(confirmed)
    }
}
