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
        objectName: "primaryLayer"
        anchors.fill: parent
        visible: !root.isCollage && hasSlide && opacity > 0
        viewModel: root.viewModel
        viewState: shared
        isPrimary: true
        muted: root.muted
    }

    SlideshowLayer {
        objectName: "secondaryLayer"
        anchors.fill: parent
        visible: !root.isCollage && hasSlide && opacity > 0
        viewModel: root.viewModel
        viewState: shared
        isPrimary: false
        muted: root.muted
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
