import QtQuick
import Sorvane.Views

// The central view of a slideshow window: the background, the two image layers moving
// through their transitions, or, in collage mode, the view model's collage wall.
Item {
    id: root

    required property SlideshowViewModel viewModel
    property bool muted: false
    // The collage wall's explanation over it; the host keeps the "seen" flag.
    property bool showCollageIntro: false
    signal collageIntroDismissed()
    readonly property SlideshowViewState viewState: shared
    readonly property bool isCollage: viewModel.displayMode === Slideshow.DisplayMode.Collage

    clip: true

    SlideshowViewState {
        id: shared
        viewModel: root.viewModel
    }

    Rectangle {
        anchors.fill: parent
        color: shared.backgroundColor
    }

    SlideshowLayer {
        id: primaryLayer
        objectName: "primaryLayer"
        partnerReady: secondaryLayer.ready || !secondaryLayer.hasModelSlide
        anchors.fill: parent
        visible: !root.isCollage && hasSlide && opacity > 0
        viewModel: root.viewModel
        viewState: shared
        isPrimary: true
        muted: root.muted
    }

    SlideshowLayer {
        id: secondaryLayer
        objectName: "secondaryLayer"
        partnerReady: primaryLayer.ready || !primaryLayer.hasModelSlide
        anchors.fill: parent
        visible: !root.isCollage && hasSlide && opacity > 0
        viewModel: root.viewModel
        viewState: shared
        isPrimary: false
        muted: root.muted
    }

    // Holds the next still decoded in the image cache (the layers ask for the same source
    // and size) until its transition starts. Only once a slide has stayed a moment: skipping
    // through photos would decode pictures that are never shown, and hold them besides.
    property bool settled: false
    Connections {
        target: root.viewModel
        function onCurrentIndexChanged() {
            root.settled = false
            settling.restart()
        }
    }
    Timer {
        id: settling
        interval: 500
        running: true
        onTriggered: root.settled = true
    }
    Image {
        visible: false
        asynchronous: true
        cache: true
        sourceSize: Qt.size(Math.ceil(root.width * Screen.devicePixelRatio), Math.ceil(root.height * Screen.devicePixelRatio))
        source: root.settled && !root.isCollage && shared.upcomingStill.toString().length > 0
            ? SlideSource.imageUrl(shared.upcomingStill, shared.scaling, shared.filter) : ""
    }

    SlideshowGestures {
        objectName: "gestures"
        anchors.fill: parent
        enabled: !root.isCollage
        viewModel: root.viewModel
    }

    Loader {
        objectName: "collage"
        anchors.fill: parent
        active: root.isCollage && shared.collageWall !== null
        sourceComponent: CollageRenderer {
            wall: shared.collageWall
            background: shared.backgroundColor
            showIntro: root.showCollageIntro
            onIntroDismissed: root.collageIntroDismissed()
        }
    }
}
