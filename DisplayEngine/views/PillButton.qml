import QtQuick

// The rounded, softly lit text button of our overlay cards.
Rectangle {
    id: button

    property string text
    // Scale of the surrounding card (1 at 900 points of shorter window edge).
    property real unit: 1
    property real maximumWidth: 10000

    signal clicked()

    width: Math.min(maximumWidth, label.implicitWidth + 2 * Math.round(28 * unit))
    height: label.implicitHeight + 2 * Math.round(11 * unit)
    radius: height / 2
    color: area.pressed ? "#26FFFFFF" : (area.containsMouse ? "#4DFFFFFF" : "#38FFFFFF")
    Behavior on color { ColorAnimation { duration: 120 } }

    Text {
        id: label
        anchors.centerIn: parent
        width: Math.min(implicitWidth, button.width - 2 * Math.round(16 * button.unit))
        elide: Text.ElideRight
        text: button.text
        color: "white"
        font.pixelSize: Math.round(16 * button.unit)
        font.weight: Font.DemiBold
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: button.clicked()
    }
}
