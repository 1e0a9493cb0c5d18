import QtQuick
import Sorvane.Views

// One slideshow window: the slides (or the wall) with their gestures, the controls and
// overlays, the players menu of a video and the one dialog. Keys never reach QML: the
// application routes them.
Window {
    id: root

    required property SlideshowViewModel viewModel
    required property SlideshowManager manager
    required property var bridge
    required property string windowId

    title: "Sorvane Slideshow"
    color: "black"

    // Beneath the views, whose gestures take the left button: a right click on a video
    // offers the players installed.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.RightButton
        onPressed: mouse => {
            if (root.bridge.showsVideo(root.viewModel))
                videoMenu.openAt(mouse.x, mouse.y)
        }
    }

    SlideshowImageViews {
        id: views
        anchors.fill: parent
        viewModel: root.viewModel
        showCollageIntro: !root.bridge.hasSeenCollageIntro
        onCollageIntroDismissed: root.bridge.collageIntroSeen()
    }

    SlideshowOverlays {
        id: overlays
        anchors.fill: parent
        viewModel: root.viewModel
        viewState: views.viewState
        manager: root.manager
        showShortcuts: root.bridge.shortcutsWindowId === root.windowId
        showMultiMonitorTip: root.bridge.tipWindowId === root.windowId
        onShortcutsDismissed: root.bridge.hideShortcuts()
        onMultiMonitorTipDismissed: root.bridge.dismissTip()
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
