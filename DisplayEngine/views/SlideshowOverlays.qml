import QtQuick
import Sorvane.Views

// What a slideshow window draws over its slides: the brand logo, the file-name and progress
// line, the controls, the scope and filter notices, and on the host's word the multi-screen
// tip and the keyboard-shortcut card. The host keeps the "seen" flags.
Item {
    id: overlays

    required property SlideshowViewModel viewModel
    required property SlideshowViewState viewState
    // Without a manager there are no scope or filter notices and no scope button.
    property SlideshowManager manager: null
    // The brand logo's source and place; none when null.
    property SlideModel brand: null
    property bool showShortcuts: false
    property bool showMultiMonitorTip: false

    signal exitRequested()
    signal shortcutsDismissed()
    signal multiMonitorTipDismissed()

    readonly property real unit: Math.max(1, Math.min(width, height) / 900)
    readonly property real margin: Math.round(24 * unit)
    // The line stays when asked to, otherwise it comes and goes with the controls.
    readonly property bool lineShown: viewState.alwaysShowImageInfo || viewModel.showControls

    BrandOverlayItem {
        objectName: "brand"
        readonly property bool shown: overlays.brand !== null && overlays.brand.overlay.visible
        source: shown ? overlays.brand.overlay.source : ""
        opacity: shown ? overlays.brand.overlay.opacity : 0
        area: shown ? overlays.brand.overlayRect(overlays.width, overlays.height) : Qt.rect(0, 0, 0, 0)
        sourceSize: Qt.size(Math.ceil(area.width * Screen.devicePixelRatio), Math.ceil(area.height * Screen.devicePixelRatio))
    }

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

    MultiMonitorTip {
        objectName: "multiMonitorTip"
        visible: overlays.showMultiMonitorTip
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: overlays.margin
        unit: overlays.unit
        scope: overlays.manager ? overlays.manager.globalSettings.controlScope : Slideshow.ControlScope.FocusedOnly
        onDismissed: overlays.multiMonitorTipDismissed()
    }

    Loader {
        anchors.fill: parent
        active: overlays.showShortcuts
        sourceComponent: ShortcutOverlay {
            objectName: "shortcuts"
            rows: overlays.viewState.shortcutRows
            footer: overlays.viewState.shortcutFooter
            onGotIt: overlays.shortcutsDismissed()
        }
    }
}
