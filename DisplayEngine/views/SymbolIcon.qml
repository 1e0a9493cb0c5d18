import QtQuick

// One of our own symbols (icons/<symbol>.svg), drawn at its size in device pixels so it stays sharp.
Image {
    id: icon
    property string symbol
    property real size: 24
    // Before the item is on a screen the ratio reads 0.
    readonly property real pixelRatio: Math.max(1, Screen.devicePixelRatio)

    width: size
    height: size
    source: symbol.length > 0 ? Qt.resolvedUrl("icons/" + symbol + ".svg") : ""
    sourceSize: Qt.size(Math.ceil(size * pixelRatio), Math.ceil(size * pixelRatio))
    fillMode: Image.PreserveAspectFit
    smooth: true
}
