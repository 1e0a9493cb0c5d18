import QtQuick
import Sorvane.Views

// The keyboard-shortcut card: the main actions with the keys bound to them now, and how to
// see every shortcut. "Got it!" tells the host, which hides the card.
OverlayCard {
    id: overlay

    // [{key, description}] and the styled footer, as SlideshowViewState publishes them.
    property var rows: []
    property string footer: ""

    signal gotIt()

    cardWidth: 560

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: Math.round(12 * overlay.unit)
        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: "keyboard"
            size: Math.round(34 * overlay.unit)
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: "Keyboard Shortcuts"
            color: "white"
            font.pixelSize: Math.round(26 * overlay.unit)
            font.weight: Font.Bold
        }
    }

    Column {
        width: overlay.contentWidth
        spacing: Math.round(10 * overlay.unit)

        Repeater {
            model: overlay.rows
            delegate: Item {
                id: line
                required property var modelData
                objectName: "shortcutRow"
                width: overlay.contentWidth
                height: Math.max(keyCap.height, what.implicitHeight)

                Rectangle {
                    id: keyCap
                    width: Math.min(line.width * 0.38, keyText.implicitWidth + 2 * Math.round(10 * overlay.unit))
                    height: keyText.implicitHeight + 2 * Math.round(5 * overlay.unit)
                    radius: Math.round(7 * overlay.unit)
                    color: "#1FFFFFFF"
                    border.color: "#26FFFFFF"
                    Text {
                        id: keyText
                        objectName: "key"
                        anchors.centerIn: parent
                        width: Math.min(implicitWidth, keyCap.width - 2 * Math.round(8 * overlay.unit))
                        elide: Text.ElideRight
                        text: line.modelData.key
                        // A removed binding reads quieter than a key.
                        color: text === "Not Set" ? "#8E8E93" : "white"
                        font.pixelSize: Math.round(15 * overlay.unit)
                        font.weight: Font.DemiBold
                    }
                }
                Text {
                    id: what
                    objectName: "description"
                    anchors.verticalCenter: parent.verticalCenter
                    x: line.width * 0.38 + Math.round(16 * overlay.unit)
                    width: line.width - x
                    wrapMode: Text.WordWrap
                    text: line.modelData.description
                    color: "#D1D1D6"
                    font.pixelSize: Math.round(16 * overlay.unit)
                }
            }
        }
    }

    Row {
        id: footerRow
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: Math.round(8 * overlay.unit)
        SymbolIcon {
            id: footerIcon
            anchors.verticalCenter: parent.verticalCenter
            symbol: "questionmark.circle"
            size: Math.round(18 * overlay.unit)
        }
        Text {
            objectName: "footer"
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, overlay.contentWidth - footerIcon.width - footerRow.spacing)
            wrapMode: Text.WordWrap
            textFormat: Text.StyledText
            text: overlay.footer
            color: "#AEAEB2"
            font.pixelSize: Math.round(14 * overlay.unit)
        }
    }

    PillButton {
        objectName: "gotItButton"
        anchors.horizontalCenter: parent.horizontalCenter
        unit: overlay.unit
        maximumWidth: overlay.contentWidth
        text: "Got it!"
        onClicked: overlay.gotIt()
    }
}
