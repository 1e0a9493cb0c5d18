import QtQuick
import Sorvane.Views

// A round button of the slideshow controls: one of our symbols, or a short word beside it.
Rectangle {
    id: button

    property string symbol
    property string label: ""
    property real size: 38
    property bool highlighted: false

    signal clicked()

    width: label.length > 0 ? Math.max(size, caption.implicitWidth + (symbol.length > 0 ? size : size * 0.6)) : size
    height: size
    radius: size / 2
    color: area.pressed ? "#40FFFFFF" : (area.containsMouse || highlighted ? "#2EFFFFFF" : "transparent")
    Behavior on color { ColorAnimation { duration: 120 } }

    Row {
        anchors.centerIn: parent
        spacing: Math.round(button.size * 0.15)
        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.symbol.length > 0
            symbol: button.symbol
            size: Math.round(button.size * 0.5)
        }
        Text {
            id: caption
            anchors.verticalCenter: parent.verticalCenter
            visible: button.label.length > 0
            text: button.label
            color: "white"
            font.pixelSize: Math.round(button.size * 0.36)
            font.weight: Font.DemiBold
        }
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: button.clicked()
    }
}
