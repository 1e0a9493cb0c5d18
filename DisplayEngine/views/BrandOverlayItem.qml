import QtQuick

// The brand's logo in its corner, at the rectangle the overlay's geometry gives.
Image {
    id: logo
    // {x, y, width, height} in this item's parent.
    property rect area: Qt.rect(0, 0, 0, 0)
    x: area.x
    y: area.y
    width: area.width
    height: area.height
    visible: area.width > 0 && area.height > 0 && source.toString().length > 0
    fillMode: Image.PreserveAspectFit
    asynchronous: true
    smooth: true
    mipmap: true
}
