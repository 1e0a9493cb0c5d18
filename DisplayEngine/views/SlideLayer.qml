import QtQuick
import Sorvane.Views
import QtMultimedia

// One slide of any kind (still, animation or video), drawn to fill its parent.
// SlideView keeps two of these and cross-fades between them.
Item {
    id: slideLayer

    // {source, posterSource, isVideo, isAnimated, serial} or null when empty.
    property var slide: null
    property string scaling: "fit_to_screen"
    property string filter: "none"
    property size decodeSize: Qt.size(-1, -1)
    property bool paused: false
    property bool muted: true

    readonly property bool hasSlide: slide !== null && slide !== undefined
    readonly property bool isVideo: hasSlide && slide.isVideo
    readonly property bool isAnimated: hasSlide && !slide.isVideo && slide.isAnimated
    readonly property bool isStill: hasSlide && !slide.isVideo && !slide.isAnimated
    // An animation too large to hold in memory is never loaded; the slide fails instead.
    readonly property string animationRefusal: isAnimated ? SlideSource.animationRefusal(slide.source) : ""
    // Something worth showing is drawn: the still, the animation's first frame, or a
    // video's poster or first frame.
    readonly property bool ready: (isStill && still.status === Image.Ready)
        || (isAnimated && animatedLoader.item !== null && animatedLoader.item.status === AnimatedImage.Ready)
        || (isVideo && videoLoader.item !== null && videoLoader.item.showable)

    signal ended()
    signal failed(string reason)

    function imageFillMode() {
        if (scaling === "fill_screen")
            return Image.PreserveAspectCrop
        if (scaling === "actual_size")
            return Image.Pad
        return Image.PreserveAspectFit
    }

    clip: true

    readonly property int filterShaderMode: ({"black_and_white": 1, "sepia": 2, "vintage": 3})[filter] || 0
    layer.enabled: SlideSource.filtersOnGpu && filterShaderMode !== 0 && hasSlide
    layer.smooth: true
    layer.effect: ShaderEffect {
        readonly property int mode: slideLayer.filterShaderMode
        fragmentShader: "qrc:/qt/qml/Sorvane/Views/shaders/imagefilter.frag.qsb"
    }

    onAnimationRefusalChanged: {
        if (animationRefusal.length > 0) {
            const reason = "the animation is too large: " + animationRefusal
            const serial = slide.serial
            // Reported once this change has settled, and only if the slide is still on show.
            Qt.callLater(() => { if (hasSlide && slide.serial === serial) slideLayer.failed(reason) })
        }
    }

    Image {
        id: still
        anchors.fill: parent
        asynchronous: true
        cache: true
        smooth: true
        fillMode: slideLayer.imageFillMode()
        sourceSize: slideLayer.decodeSize
        source: slideLayer.isStill ? SlideSource.imageUrl(slideLayer.slide.source, slideLayer.scaling, slideLayer.filter) : ""
        onStatusChanged: if (status === Image.Error) slideLayer.failed("the picture could not be decoded")
    }

    Loader {
        id: animatedLoader
        anchors.fill: parent
        active: slideLayer.isAnimated && slideLayer.animationRefusal.length === 0
        sourceComponent: AnimatedImage {
            asynchronous: true
            cache: false
            smooth: true
            fillMode: slideLayer.imageFillMode()
            paused: slideLayer.paused
            source: slideLayer.slide.source
            onStatusChanged: if (status === AnimatedImage.Error) slideLayer.failed("the animation could not be decoded")
        }
    }

    // One output for every video the layer plays, made once: each new output sets up its
    // own link to the window's graphics, and where that link fails (a display without a
    // GPU) what it set up stays behind, tens of megabytes per video played.
    VideoOutput {
        id: output
        anchors.fill: parent
        visible: slideLayer.isVideo
        fillMode: slideLayer.scaling === "fill_screen" ? VideoOutput.PreserveAspectCrop : VideoOutput.PreserveAspectFit
    }

    Loader {
        id: videoLoader
        anchors.fill: parent
        active: slideLayer.isVideo
        sourceComponent: Item {
            id: videoItem
            // A first frame has been drawn, or the poster stands in for it.
            readonly property bool started: player.position > 0
            readonly property bool showable: started || poster.status === Image.Ready

            MediaPlayer {
                id: player
                source: slideLayer.slide.source
                videoOutput: output
                audioOutput: AudioOutput { muted: slideLayer.muted }
                onMediaStatusChanged: {
                    if (mediaStatus === MediaPlayer.EndOfMedia)
                        slideLayer.ended()
                    else if (mediaStatus === MediaPlayer.InvalidMedia)
                        slideLayer.failed("the video could not be played")
                }
                onErrorOccurred: (error, errorString) => slideLayer.failed(errorString.length > 0 ? errorString : "the video stopped with an error")
            }
            // The poster covers the video until its first frame, so there is no black gap.
            Image {
                id: poster
                anchors.fill: parent
                visible: !videoItem.started
                asynchronous: true
                smooth: true
                fillMode: slideLayer.imageFillMode()
                sourceSize: slideLayer.decodeSize
                source: slideLayer.slide.posterSource.toString().length > 0
                    ? SlideSource.imageUrl(slideLayer.slide.posterSource, slideLayer.scaling, "none") : ""
            }
            Component.onCompleted: {
                if (!slideLayer.paused)
                    player.play()
            }
            // Lets the pipeline wind down before it is dropped with the layer.
            Component.onDestruction: player.stop()
            Connections {
                target: slideLayer
                function onPausedChanged() {
                    if (slideLayer.paused)
                        player.pause()
                    else
                        player.play()
                }
            }
        }
    }
}
