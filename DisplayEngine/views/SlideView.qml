import QtQuick
import Sorvane.Views

// The classic slide: one item at a time, scaled as the show asks, cross-faded
// into the next. The next still is decoded ahead so that an advance never waits.
Item {
    id: view

    property var slide: null // {source, posterSource, isVideo, isAnimated, serial}
    property url preloadSource
    property string scaling: "fit_to_screen"
    property string filter: "none"
    property bool crossfade: true
    property real transitionSeconds: 0.6
    property bool paused: false
    property bool muted: true

    signal presented(int serial)
    signal ended(int serial)
    signal failed(int serial, string reason)

    // Decoded at the size it is drawn at; the actual-size view needs every pixel.
    readonly property size decodeSize: scaling === "actual_size"
        ? Qt.size(-1, -1)
        : Qt.size(Math.max(1, Math.round(width * Screen.devicePixelRatio)),
                  Math.max(1, Math.round(height * Screen.devicePixelRatio)))

    property Item current: null
    property Item incoming: null

    function otherLayer(layer) { return layer === first ? second : first }

    function load(slide) {
        if (!slide || slide.serial === 0)
            return
        const target = otherLayer(current)
        fade.stop()
        if (incoming && incoming !== target)
            incoming.opacity = 1
        target.z = 1
        otherLayer(target).z = 0
        target.opacity = 0
        target.slide = {
            source: slide.source, posterSource: slide.posterSource,
            isVideo: slide.isVideo, isAnimated: slide.isAnimated, serial: slide.serial
        }
        incoming = target
        if (target.ready)
            reveal()
    }

    function reveal() {
        const layer = incoming
        if (!layer)
            return
        incoming = null
        const previous = current
        current = layer
        view.presented(layer.slide.serial)
        if (crossfade && transitionSeconds > 0 && previous && previous.hasSlide) {
            fade.target = layer
            fade.previous = previous
            fade.duration = Math.round(transitionSeconds * 1000)
            fade.start()
        } else {
            layer.opacity = 1
            if (previous)
                previous.slide = null
        }
    }

    onSlideChanged: load(slide)
    Component.onCompleted: load(slide)

    NumberAnimation {
        id: fade
        property Item previous: null
        property: "opacity"
        from: 0
        to: 1
        easing.type: Easing.InOutQuad
        onFinished: {
            // The old slide is let go at once: its decoded pixels are freed.
            if (previous && previous !== view.current)
                previous.slide = null
            previous = null
        }
    }

    SlideLayer {
        id: first
        anchors.fill: parent
        scaling: view.scaling
        filter: view.filter
        decodeSize: view.decodeSize
        paused: view.paused || view.current !== first
        muted: view.muted
        onReadyChanged: if (ready && view.incoming === first) view.reveal()
        onEnded: if (view.current === first && hasSlide) view.ended(slide.serial)
        onFailed: reason => { if (hasSlide) view.failed(slide.serial, reason) }
    }
    SlideLayer {
        id: second
        anchors.fill: parent
        scaling: view.scaling
        filter: view.filter
        decodeSize: view.decodeSize
        paused: view.paused || view.current !== second
        muted: view.muted
        onReadyChanged: if (ready && view.incoming === second) view.reveal()
        onEnded: if (view.current === second && hasSlide) view.ended(slide.serial)
        onFailed: reason => { if (hasSlide) view.failed(slide.serial, reason) }
    }

    // Holds the next still decoded in the image cache until its show.
    Image {
        visible: false
        asynchronous: true
        cache: true
        sourceSize: view.decodeSize
        source: view.preloadSource.toString().length > 0
            ? SlideSource.imageUrl(view.preloadSource, view.scaling, view.filter) : ""
    }
}
