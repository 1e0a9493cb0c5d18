import QtQuick
import Sorvane.Views

// A short tip for a show on several screens: what the screens do now, and that the scope
// button changes it. The host keeps the "seen" flag.
Rectangle {
    id: tip

    property real unit: 1
    property int scope: Slideshow.ControlScope.FocusedOnly
    readonly property string explanation: {
        switch (scope) {
        case Slideshow.ControlScope.All:
            return "The screens move together and never show the same photo at once. Use the scope button in the controls to let each screen run its own show, or to mirror one photo on all of them."
        case Slideshow.ControlScope.Mirrored:
            return "Every screen shows the same photo. Use the scope button in the controls to give each screen its own photos, linked or each running its own show."
        default:
            return "Each screen runs its own show. Use the scope button in the controls to link the screens so they move together, or to mirror one photo on all of them."
        }
    }

    signal dismissed()

    width: Math.round(420 * unit)
    height: body.implicitHeight + 2 * Math.round(16 * unit)
    radius: Math.round(16 * unit)
    color: "#E61C1C1E"
    border.color: "#33FFFFFF"
    border.width: 1

    // The tip is not a way through to the slide underneath.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
    }

    Row {
        id: body
        x: Math.round(16 * tip.unit)
        anchors.verticalCenter: parent.verticalCenter
        width: tip.width - 2 * x
        spacing: Math.round(12 * tip.unit)

        SymbolIcon {
            id: icon
            symbol: "display.2"
            size: Math.round(28 * tip.unit)
        }
        Column {
            width: body.width - icon.width - close.width - 2 * body.spacing
            spacing: Math.round(4 * tip.unit)
            Text {
                width: parent.width
                wrapMode: Text.WordWrap
                text: "Playing on more than one screen"
                color: "white"
                font.pixelSize: Math.round(15 * tip.unit)
                font.weight: Font.DemiBold
            }
            Text {
                width: parent.width
                wrapMode: Text.WordWrap
                text: tip.explanation
                color: "#AEAEB2"
                font.pixelSize: Math.round(13 * tip.unit)
                lineHeight: 1.1
            }
        }
        Item {
            id: close
            objectName: "closeButton"
            width: Math.round(24 * tip.unit)
            height: width
            Rectangle {
                anchors.fill: parent
                radius: width / 2
                color: closeArea.containsMouse ? "#38FFFFFF" : "transparent"
            }
            SymbolIcon {
                anchors.centerIn: parent
                symbol: "xmark"
                size: Math.round(12 * tip.unit)
                opacity: 0.8
            }
            MouseArea {
                id: closeArea
                anchors.fill: parent
                hoverEnabled: true
                onClicked: tip.dismissed()
            }
        }
    }
}
