import QtQuick

// Explains the collage wall the first time it is shown. The host keeps the "seen" flag and
// hides the overlay when it is dismissed; until then the wall underneath takes no clicks.
Item {
    id: overlay
    signal dismissed()

    anchors.fill: parent

    // Everything is sized from the window so the card reads the same at 720p, 4K and in portrait.
    readonly property real unit: Math.max(1, Math.min(width, height) / 900)
    readonly property real padding: Math.round(36 * unit)

    Rectangle {
        anchors.fill: parent
        color: "#A6000000"
    }

    // Swallows every press, wheel and hover so nothing reaches the wall through the backdrop.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }

    Rectangle {
        id: card
        objectName: "introCard"
        anchors.centerIn: parent
        width: Math.min(overlay.width - 2 * Math.round(24 * overlay.unit), Math.round(620 * overlay.unit))
        height: content.implicitHeight + 2 * overlay.padding
        radius: Math.round(22 * overlay.unit)
        color: "#F21C1C1E"
        border.color: "#33FFFFFF"
        border.width: 1

        Column {
            id: content
            x: overlay.padding
            y: overlay.padding
            width: card.width - 2 * overlay.padding
            spacing: Math.round(22 * overlay.unit)

            Column {
                width: parent.width
                spacing: Math.round(12 * overlay.unit)

                SymbolIcon {
                    anchors.horizontalCenter: parent.horizontalCenter
                    symbol: "square.grid.2x2.fill"
                    size: Math.round(44 * overlay.unit)
                }
                Text {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.WordWrap
                    text: "Collage Slideshow"
                    color: "white"
                    font.pixelSize: Math.round(28 * overlay.unit)
                    font.weight: Font.Bold
                }
                Text {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.WordWrap
                    lineHeight: 1.15
                    text: "Many photos fill the screen at once and refresh on their own. You can still interact with any photo:"
                    color: "#D1D1D6"
                    font.pixelSize: Math.round(17 * overlay.unit)
                }
            }

            Column {
                width: parent.width
                spacing: Math.round(16 * overlay.unit)

                Repeater {
                    model: [
                        { symbol: "rectangle.lefthalf.filled", title: "Click the left or right of a photo",
                          detail: "Show the previous or next photo in that spot" },
                        { symbol: "arrow.up.left.and.arrow.down.right", title: "Double-click a photo",
                          detail: "Open it full-screen as a Standard slideshow" }
                    ]
                    delegate: Rectangle {
                        id: step
                        required property var modelData
                        width: parent.width
                        height: row.implicitHeight + 2 * Math.round(14 * overlay.unit)
                        radius: Math.round(14 * overlay.unit)
                        color: "#14FFFFFF"

                        Row {
                            id: row
                            x: Math.round(16 * overlay.unit)
                            anchors.verticalCenter: parent.verticalCenter
                            width: parent.width - 2 * x
                            spacing: Math.round(16 * overlay.unit)

                            SymbolIcon {
                                id: rowIcon
                                anchors.verticalCenter: parent.verticalCenter
                                symbol: step.modelData.symbol
                                size: Math.round(30 * overlay.unit)
                            }
                            Column {
                                width: row.width - rowIcon.width - row.spacing
                                anchors.verticalCenter: parent.verticalCenter
                                spacing: Math.round(3 * overlay.unit)
                                Text {
                                    width: parent.width
                                    wrapMode: Text.WordWrap
                                    text: step.modelData.title
                                    color: "white"
                                    font.pixelSize: Math.round(16 * overlay.unit)
                                    font.weight: Font.DemiBold
                                }
                                Text {
                                    width: parent.width
                                    wrapMode: Text.WordWrap
                                    text: step.modelData.detail
                                    color: "#AEAEB2"
                                    font.pixelSize: Math.round(14 * overlay.unit)
                                }
                            }
                        }
                    }
                }
            }

            Row {
                id: footer
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: Math.round(8 * overlay.unit)

                SymbolIcon {
                    id: footerIcon
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "questionmark.circle"
                    size: Math.round(18 * overlay.unit)
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    width: Math.min(implicitWidth, content.width - footerIcon.width - footer.spacing)
                    wrapMode: Text.WordWrap
                    text: "Press ? at any time to see all keyboard shortcuts."
                    color: "#AEAEB2"
                    font.pixelSize: Math.round(14 * overlay.unit)
                }
            }

            PillButton {
                objectName: "dismissButton"
                anchors.horizontalCenter: parent.horizontalCenter
                unit: overlay.unit
                maximumWidth: content.width
                text: "Don't show this again"
                onClicked: overlay.dismissed()
            }
        }
    }
}
