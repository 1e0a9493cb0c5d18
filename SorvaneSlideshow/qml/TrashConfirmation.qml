import QtQuick

// Asks before a file goes to the trash: the slideshow's only dialog.
Item {
    id: dialog

    property string fileName
    signal answered(bool confirmed)

    // Swallows the pointer so that nothing behind the dialog reacts while it is open.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }
    Rectangle {
        anchors.fill: parent
        color: "#80000000"
    }
    Rectangle {
        anchors.centerIn: parent
        width: Math.min(parent.width - 40, Math.max(column.implicitWidth + 48, 360))
        height: column.implicitHeight + 40
        radius: 10
        color: "#262626"
        border.color: "#444"

        Column {
            id: column
            anchors.centerIn: parent
            width: parent.width - 48
            spacing: 16

            Text {
                width: parent.width
                text: "Move \u201c" + dialog.fileName + "\u201d to the Trash?"
                color: "white"
                font.pixelSize: 17
                font.bold: true
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
            }
            Row {
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 12
                DialogButton {
                    text: "Cancel"
                    onClicked: dialog.answered(false)
                }
                DialogButton {
                    text: "Move to Trash"
                    emphasized: true
                    onClicked: dialog.answered(true)
                }
            }
        }
    }
}
