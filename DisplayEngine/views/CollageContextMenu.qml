import QtQuick

// The popup menu of a tile: the host's own items, then the wall's. It covers its parent so that
// a press anywhere outside the menu closes it instead of reaching the wall.
Item {
    id: menu

    property bool flowWall: false
    property bool autoCycling: false
    property var hostItems: [] // [{ id, text }]

    readonly property bool isOpen: current.open
    readonly property int slot: current.slot
    readonly property string menuId: current.menuId

    signal hostItemChosen(string id, int slot)
    signal openFullRequested(int slot)
    signal toggleAutoCycleRequested()
    signal menuOpened(string menuId)
    signal menuClosed(string menuId)

    function openAt(x, y, slot) {
        close()
        current.slot = slot
        current.openings += 1
        current.menuId = "collage-menu-" + current.openings
        current.anchorX = x
        current.anchorY = y
        current.open = true
        menu.menuOpened(current.menuId)
    }

    function close() {
        if (!current.open)
            return
        current.open = false
        menu.menuClosed(current.menuId)
    }

    function choose(entry) {
        const chosenSlot = current.slot
        close()
        if (entry.kind === "host")
            menu.hostItemChosen(entry.id, chosenSlot)
        else if (entry.kind === "openFull")
            menu.openFullRequested(chosenSlot)
        else if (entry.kind === "autoCycle")
            menu.toggleAutoCycleRequested()
    }

    readonly property var entries: {
        const list = Array.from(hostItems || []).map(item => ({ kind: "host", id: String(item.id), text: String(item.text) }))
        list.push({ kind: "openFull", id: "", text: "Open in a full slideshow" })
        if (flowWall)
            list.push({ kind: "autoCycle", id: "",
                        text: autoCycling ? "Stop automatic tile cycling" : "Start automatic tile cycling" })
        return list
    }

    anchors.fill: parent
    visible: current.open

    QtObject {
        id: current
        property bool open: false
        property int slot: -1
        property string menuId: ""
        property int openings: 0
        property real anchorX: 0
        property real anchorY: 0
    }

    readonly property real unit: Math.max(1, Math.min(width, height) / 900)
    readonly property real margin: Math.round(8 * unit)

    readonly property real labelInset: Math.round(12 * unit)
    // Naming the font makes the width follow it: a method call alone records no dependency.
    readonly property real widestText: metrics.font.pixelSize > 0
        ? Math.ceil(Math.max(...entries.map(entry => metrics.advanceWidth(entry.text)))) : 0

    FontMetrics {
        id: metrics
        font.pixelSize: Math.round(15 * menu.unit)
    }

    // Places one side of the menu at the point, or before it when there is no room after it.
    function placed(point, extent, room) {
        const after = point + extent <= room - margin ? point : point - extent
        return Math.max(margin, Math.min(after, room - extent - margin))
    }

    MouseArea {
        id: catcher
        anchors.fill: parent
        enabled: current.open
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: menu.close()
        onWheel: wheel => wheel.accepted = true
    }

    // A soft edge under the panel so it lifts off bright photos.
    Rectangle {
        x: panel.x - 1
        y: panel.y + Math.round(2 * menu.unit)
        width: panel.width + 2
        height: panel.height + Math.round(3 * menu.unit)
        radius: panel.radius + 1
        color: "#59000000"
    }

    Rectangle {
        id: panel
        objectName: "menuPanel"
        width: Math.min(menu.width - 2 * menu.margin,
                        Math.max(Math.round(220 * menu.unit), menu.widestText + 3 * menu.labelInset + 2 * list.x))
        height: list.implicitHeight + 2 * list.y
        x: menu.placed(current.anchorX, width, menu.width)
        y: menu.placed(current.anchorY, height, menu.height)
        radius: Math.round(10 * menu.unit)
        color: "#F22C2C2E"
        border.color: "#33FFFFFF"
        border.width: 1

        // A press on the panel's padding must not fall to the catcher and close the menu.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
        }

        Column {
            id: list
            x: Math.round(5 * menu.unit)
            y: Math.round(5 * menu.unit)
            width: panel.width - 2 * x

            Repeater {
                model: menu.entries
                delegate: Item {
                    id: row
                    required property var modelData
                    required property int index
                    readonly property bool separated: index > 0 && modelData.kind !== "host"
                        && menu.entries[index - 1].kind === "host"
                    objectName: "menuRow"
                    width: list.width
                    height: rowHeight + (separated ? separatorGap : 0)

                    readonly property real rowHeight: Math.round(34 * menu.unit)
                    readonly property real separatorGap: Math.round(11 * menu.unit)

                    Rectangle {
                        visible: row.separated
                        x: Math.round(8 * menu.unit)
                        width: parent.width - 2 * x
                        y: Math.round(row.separatorGap / 2)
                        height: 1
                        color: "#33FFFFFF"
                    }
                    Rectangle {
                        id: highlight
                        y: row.height - row.rowHeight
                        width: parent.width
                        height: row.rowHeight
                        radius: Math.round(6 * menu.unit)
                        color: rowArea.containsMouse ? (rowArea.pressed ? "#4DFFFFFF" : "#33FFFFFF") : "transparent"
                    }
                    Text {
                        id: label
                        x: menu.labelInset
                        width: parent.width - 2 * x
                        anchors.verticalCenter: highlight.verticalCenter
                        text: row.modelData.text
                        color: "white"
                        elide: Text.ElideRight
                        font: metrics.font
                    }
                    MouseArea {
                        id: rowArea
                        anchors.fill: highlight
                        hoverEnabled: true
                        onClicked: menu.choose(row.modelData)
                    }
                }
            }
        }
    }
}
