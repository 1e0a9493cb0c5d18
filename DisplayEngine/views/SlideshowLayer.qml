import QtQuick
import Sorvane.Views

// One of the two image layers of a slideshow window, placed by the running transition:
// scaled, shifted and turned about its vertical axis as TransitionGeometry says, with the
// view model's opacity. The layer that holds the current slide also takes the zoom and pan.
Item {
    id: layer

    required property SlideshowViewModel viewModel
    required property SlideshowViewState viewState
    required property bool isPrimary
    // The window's sound is off (another window has it, or the host asked for silence).
    property bool muted: false

    // Whether the other layer has its slide drawn. Until it has, the slide this layer gave up
    // in a cut stays on screen under it, so the screen never goes empty while the next photo
    // decodes. (A transition's incoming still is decoded ahead, see SlideshowImageViews.)
    property bool partnerReady: true
    readonly property var modelSlide: isPrimary ? viewState.primarySlide : viewState.secondarySlide
    readonly property bool hasModelSlide: modelSlide !== null && modelSlide !== undefined
    property var lastSlide: null
    onModelSlideChanged: if (hasModelSlide) lastSlide = modelSlide
    onPartnerReadyChanged: if (partnerReady && !hasModelSlide) lastSlide = null
    readonly property bool covering: !viewModel.isTransitioning && !isIncoming && !partnerReady && !hasModelSlide
        && lastSlide !== null
    readonly property var slide: hasModelSlide ? modelSlide : (covering ? lastSlide : null)
    readonly property bool hasSlide: slide !== null && slide !== undefined
    // While a transition runs the layer that is not active is coming in; at rest the active
    // layer holds the current slide and keeps drifting (Ken Burns) as an arrived one.
    readonly property bool isIncoming: viewModel.isTransitioning
        ? viewModel.isPrimaryLayerActive !== isPrimary
        : viewModel.isPrimaryLayerActive === isPrimary
    readonly property var geometry: TransitionGeometry.layer(viewModel.activeTransitionStyle,
        viewModel.isTransitioning ? viewModel.transitionProgress : 1, viewModel.transitionDirection,
        viewModel.kenBurnsVector, viewModel.kenBurnsProgress, viewModel.outgoingKenBurnsVector,
        viewModel.outgoingKenBurnsAmount, isIncoming, Qt.size(width, height))
    readonly property real zoom: isIncoming ? viewModel.zoomLevel : 1
    readonly property real layerScale: geometry.scale * zoom
    readonly property real offsetX: geometry.x + (isIncoming ? viewModel.zoomOffset.width : 0)
    readonly property real offsetY: geometry.y + (isIncoming ? viewModel.zoomOffset.height : 0)
    readonly property real turn: geometry.rotation
    readonly property bool ready: content.ready

    opacity: covering ? 1 : isPrimary ? viewModel.primaryOpacity : viewModel.secondaryOpacity
    visible: hasSlide && opacity > 0
    // The incoming slide is drawn above the one it replaces.
    z: isIncoming ? 1 : 0

    transform: [
        Scale {
            origin.x: layer.width / 2
            origin.y: layer.height / 2
            xScale: layer.layerScale
            yScale: layer.layerScale
        },
        // A card turning over: a real perspective turn about the vertical centre line.
        Rotation {
            origin.x: layer.width / 2
            origin.y: layer.height / 2
            axis { x: 0; y: 1; z: 0 }
            angle: layer.turn
        },
        Translate {
            x: layer.offsetX
            y: layer.offsetY
        }
    ]

    SlideLayer {
        id: content
        objectName: "content"
        anchors.fill: parent
        slide: layer.hasSlide ? layer.slide : null
        scaling: layer.viewState.scaling
        filter: layer.viewState.filter
        decodeSize: Qt.size(Math.ceil(layer.width * Screen.devicePixelRatio), Math.ceil(layer.height * Screen.devicePixelRatio))
        paused: layer.viewModel.isPaused
        muted: layer.muted || !layer.isIncoming
        // Stills and animations have no end; a video's end lets the show move on, and
        // anything that cannot be shown leaves it.
        onEnded: if (layer.hasModelSlide && layer.slide.isVideo) layer.viewModel.videoEnded(layer.slide.id)
        onFailed: reason => {
            if (layer.hasModelSlide)
                layer.viewModel.itemFailed(layer.slide.id)
        }
    }
}
