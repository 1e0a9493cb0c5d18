import QtQuick

// One button of the panel: our own icon with its label under it.
Item {
    id: button
    property string symbol
    property string label
    property bool selected: false
    signal clicked()

    implicitWidth: 84
    implicitHeight: 64

    Rectangle {
        anchors.fill: parent
        radius: 12
        color: button.selected ? "#40FFFFFF" : (hover.hovered ? "#26FFFFFF" : "transparent")
        Behavior on color { ColorAnimation { duration: 120 } }
    }
    Image {
        id: icon
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: 9
        width: 26
        height: 26
        sourceSize: Qt.size(52, 52)
        source: "icons/" + button.symbol + ".svg"
        opacity: tap.pressed ? 0.6 : 1
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 7
        text: button.label
        color: button.selected ? "white" : "#D1D1D6"
        font.pixelSize: 12
        font.weight: button.selected ? Font.DemiBold : Font.Normal
    }
    HoverHandler { id: hover }
    TapHandler {
        id: tap
        onTapped: button.clicked()
    }
}
