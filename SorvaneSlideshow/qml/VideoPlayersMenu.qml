import QtQuick

// The context menu of a video: "Open in external player" with the players installed.
// It covers its parent while open, so that a press outside it closes it.
Item {
    id: menu

    property var players: []
    readonly property bool opened: panel.visible
    signal playerChosen(int index)

    function openAt(x, y) {
        panel.x = Math.min(x, width - panel.width)
        panel.y = Math.min(y, height - panel.height)
        panel.visible = true
    }
    function close() {
        panel.visible = false
    }

    MouseArea {
        anchors.fill: parent
        enabled: panel.visible
        acceptedButtons: Qt.AllButtons
        onPressed: menu.close()
    }
    Rectangle {
        id: panel
        visible: false
        width: 260
        height: entries.implicitHeight + 12
        radius: 6
        color: "#2b2b2b"
        border.color: "#555"

        Column {
            id: entries
            x: 6
            y: 6
            width: parent.width - 12
            Text {
                text: "Open in external player"
                color: "#aaa"
                font.pixelSize: 13
                leftPadding: 8
                height: 26
                verticalAlignment: Text.AlignVCenter
            }
            Repeater {
                model: menu.players
                Rectangle {
                    required property int index
                    required property string modelData
                    width: entries.width
                    height: 30
                    radius: 4
                    color: rowHover.hovered ? "#3d6fd1" : "transparent"
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        leftPadding: 16
                        text: modelData
                        color: "white"
                        font.pixelSize: 15
                    }
                    HoverHandler { id: rowHover }
                    TapHandler {
                        onTapped: {
                            menu.close()
                            menu.playerChosen(index)
                        }
                    }
                }
            }
        }
    }
}
