import QtQuick

// The panel of buttons that comes up while the pointer moves.
Item {
    id: panel
    required property var controls // PlayerControlsModel
    readonly property bool shown: controls.visible && controls.hasShow

    width: row.implicitWidth + 24
    height: row.implicitHeight + 20
    opacity: shown ? 1 : 0
    visible: opacity > 0
    Behavior on opacity { NumberAnimation { duration: 220; easing.type: Easing.InOutQuad } }

    Rectangle {
        anchors.fill: parent
        radius: 18
        color: "#D91C1C1E"
        border.color: "#33FFFFFF"
        border.width: 1
    }

    // A pointer resting on the panel keeps it up.
    HoverHandler {
        onHoveredChanged: {
            if (hovered) {
                const origin = panel.mapToGlobal(0, 0)
                panel.controls.stripRect = Qt.rect(origin.x, origin.y, panel.width, panel.height)
            } else {
                panel.controls.stripRect = Qt.rect(0, 0, 0, 0)
            }
        }
    }

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 6
        Repeater {
            model: panel.controls.buttons
            delegate: ControlButtonView {
                required property var modelData
                symbol: modelData.symbol
                label: modelData.label
                selected: modelData.selected
                onClicked: {
                    if (modelData.action === "chooseStyle")
                        panel.controls.chooseStyle(modelData.style)
                    else
                        panel.controls[modelData.action]()
                }
            }
        }
    }
}
