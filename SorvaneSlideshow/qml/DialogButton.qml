import QtQuick

// A plain button for the window's small dialog and menu.
Rectangle {
    id: button

    property alias text: label.text
    property bool emphasized: false
    signal clicked()

    implicitWidth: Math.max(96, label.implicitWidth + 32)
    implicitHeight: 36
    radius: 6
    color: hover.hovered ? (emphasized ? "#d9534f" : "#555") : (emphasized ? "#c9302c" : "#3a3a3a")

    Text {
        id: label
        anchors.centerIn: parent
        color: "white"
        font.pixelSize: 15
    }
    HoverHandler { id: hover }
    TapHandler { onTapped: button.clicked() }
}
