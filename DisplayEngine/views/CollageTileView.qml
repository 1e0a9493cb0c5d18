import QtQuick
import Sorvane.Views

// One photo of a wall: the item's thumbnail, decoded off the GUI thread to fit `decodeSize`,
// cross-fading when the slot's item changes. A placeholder shows until the first arrives;
// the old photo stays up while the new one loads, so a change never flashes empty.
Item {
    id: tile

    property string itemId
    property url source          // the item's file
    property size decodeSize: Qt.size(512, 512) // pixels the thumbnail fits inside
    property real cornerRadius: 0
    property real fadeSeconds: 0.6

    signal aspect(string itemId, real value)
    signal failed(string itemId)

    property Image front: imageA
    property Image back: imageB
    property string retiring: ""
    readonly property bool ready: front.status === Image.Ready

    clip: true

    function show() {
        const url = tile.source.toString() === "" ? "" : CollageSource.imageUrl(tile.source)
        if (url === tile.front.source.toString() && tile.front.status !== Image.Error)
            return
        tile.back.opacity = 0
        tile.back.source = url
    }

    function arrived(image) {
        if (image !== tile.back || image.source.toString() === "")
            return
        if (image.status === Image.Ready) {
            tile.aspect(tile.itemId, image.implicitWidth / Math.max(1, image.implicitHeight))
            const old = tile.front
            tile.front = image
            tile.back = old
            image.z = 1
            old.z = 0
            tile.retiring = old.source.toString()
            fade.target = image
            fade.restart()
        } else if (image.status === Image.Error) {
            tile.failed(tile.itemId)
        }
    }

    onSourceChanged: show()
    Component.onCompleted: show()

    Rectangle {
        anchors.fill: parent
        radius: tile.cornerRadius
        color: "#1d1d21"
        visible: !tile.ready
    }

    component TileImage: Image {
        anchors.fill: parent
        asynchronous: true
        // Copies of a tile (a Flow strip repeats its tiles) share one image and one texture.
        cache: true
        fillMode: Image.PreserveAspectCrop
        sourceSize: tile.decodeSize
        opacity: 0
        onStatusChanged: tile.arrived(this)
    }

    TileImage { id: imageA }
    TileImage { id: imageB }

    NumberAnimation {
        id: fade
        property: "opacity"
        from: 0
        to: 1
        duration: tile.fadeSeconds * 1000
        easing.type: Easing.InOutQuad
        onFinished: {
            // Unless a newer change already reuses it, the old image lets its pixels go.
            if (tile.back.source.toString() === tile.retiring)
                tile.back.source = ""
        }
    }
}
