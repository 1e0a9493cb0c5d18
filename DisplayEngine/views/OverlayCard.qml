import QtQuick

// A dimmed backdrop over the whole window with one calm card in its middle; the children are
// stacked in the card. Until the overlay goes, nothing underneath takes a click or a wheel.
Item {
    id: overlay

    default property alias content: column.data
    // Everything is sized from the window so the card reads the same at 720p, 4K and in portrait.
    readonly property real unit: Math.max(1, Math.min(width, height) / 900)
    readonly property real padding: Math.round(36 * unit)
    readonly property real contentWidth: column.width
    property real cardWidth: 620

    anchors.fill: parent

    Rectangle {
        anchors.fill: parent
        color: "#A6000000"
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }

    Rectangle {
        id: card
        objectName: "card"
        anchors.centerIn: parent
        width: Math.min(overlay.width - 2 * Math.round(24 * overlay.unit), Math.round(overlay.cardWidth * overlay.unit))
        height: column.implicitHeight + 2 * overlay.padding
        radius: Math.round(22 * overlay.unit)
        color: "#F21C1C1E"
        border.color: "#33FFFFFF"
        border.width: 1

        Column {
            id: column
            x: overlay.padding
            y: overlay.padding
            width: card.width - 2 * overlay.padding
            spacing: Math.round(22 * overlay.unit)
        }
    }
}
