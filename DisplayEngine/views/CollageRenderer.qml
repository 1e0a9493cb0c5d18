import QtQuick
import Sorvane.Views

// Draws one collage wall (Varied, Flow or Scatter) from its model and turns clicks on a photo
// into the wall's navigation. The model keeps the wall's state, clocks and history; this view
// only draws what it publishes, tells it its size, and reports loaded and failed images.
Item {
    id: renderer

    required property CollageWallModel wall
    // Gap between tiles, in points.
    property real spacing: 6
    property real cornerRadius: 3
    property color background: "black"

    // Shows the explanation of the wall over it; the host keeps the "seen" flag.
    property bool showIntro: false
    // The host's own context-menu items, [{ "id", "text" }], listed before the wall's.
    property var hostMenuItems: []

    // A tile's photo arrived (the first one tells the host the wall is on screen).
    signal tileShown()
    signal introDismissed()
    signal hostMenuItemChosen(string id, int slot)

    readonly property string layoutName: wall ? wall.layoutName : ""
    // Each Flow strip's position this frame.
    property var offsets: []

    clip: true

    // Thumbnails are asked for in steps, so a small resize does not decode everything again.
    function decodeEdge(points) {
        const pixels = Math.max(64, points * Screen.devicePixelRatio)
        return Math.ceil(pixels / 64) * 64
    }
    function decodeSquare(points) {
        const edge = decodeEdge(points)
        return Qt.size(edge, edge)
    }

    function tileFailed(itemId) { renderer.wall.tileFailed(itemId) }

    // The item the open menu was asked for, for a Scatter photo that has no slot.
    property string menuItemId: ""
    function openMenu(from, x, y, slot, itemId) {
        const at = from.mapToItem(renderer, x, y)
        renderer.menuItemId = itemId
        menu.openAt(at.x, at.y, slot)
    }
    function tileAspect(itemId, value) {
        renderer.wall.reportAspect(itemId, value)
        renderer.tileShown()
    }

    onWidthChanged: if (wall) wall.setViewport(width, height)
    onHeightChanged: if (wall) wall.setViewport(width, height)
    Component.onCompleted: {
        wall.setViewport(width, height)
        wall.appear()
        syncPile()
    }
    Component.onDestruction: {
        if (wall)
            wall.capture()
    }

    Rectangle {
        anchors.fill: parent
        color: renderer.background
    }

    // Any movement over the wall pauses the Flow scroll for a moment. Qt Quick also re-sends
    // hover to a pointer resting still while the tiles move under it; that is not a movement,
    // or a pointer left on the screen would hold the wall for ever.
    property point lastPointer: Qt.point(-1, -1)
    HoverHandler {
        onPointChanged: {
            const at = point.scenePosition
            if (at.x === renderer.lastPointer.x && at.y === renderer.lastPointer.y)
                return
            renderer.lastPointer = at
            renderer.wall.pointerMoved()
        }
    }

    property bool reshuffling: false
    Timer {
        id: reshuffleEnd
        interval: 750
        onTriggered: renderer.reshuffling = false
    }
    Connections {
        target: renderer.wall
        function onVariantIndexChanged() {
            renderer.reshuffling = true
            reshuffleEnd.restart()
        }
    }

    // Varied: the template's rectangles, each holding one slot.
    Repeater {
        model: renderer.layoutName === "collage" ? Math.min(renderer.wall.tiles.length, renderer.wall.variedRects.length) : 0
        delegate: Item {
            id: cell
            required property int index
            readonly property var tile: renderer.wall.tiles[index]
            // A portrait screen takes the template on its side, so tiles keep landscape proportions.
            readonly property rect given: renderer.wall.variedRects[index]
            readonly property rect unit: renderer.height > renderer.width
                ? Qt.rect(given.y, given.x, given.height, given.width) : given
            x: renderer.spacing + unit.x * (renderer.width - renderer.spacing)
            y: renderer.spacing + unit.y * (renderer.height - renderer.spacing)
            width: unit.width * (renderer.width - renderer.spacing) - renderer.spacing
            height: unit.height * (renderer.height - renderer.spacing) - renderer.spacing
            // Tiles glide to a new template; they are simply placed on first show and on resizes.
            Behavior on x { enabled: renderer.reshuffling; NumberAnimation { duration: 700; easing.type: Easing.InOutQuad } }
            Behavior on y { enabled: renderer.reshuffling; NumberAnimation { duration: 700; easing.type: Easing.InOutQuad } }
            Behavior on width { enabled: renderer.reshuffling; NumberAnimation { duration: 700; easing.type: Easing.InOutQuad } }
            Behavior on height { enabled: renderer.reshuffling; NumberAnimation { duration: 700; easing.type: Easing.InOutQuad } }

            CollageTileView {
                anchors.fill: parent
                itemId: cell.tile.itemId
                source: cell.tile.url
                cornerRadius: renderer.cornerRadius
                decodeSize: renderer.decodeSquare(Math.max(renderer.width, renderer.height) * 0.5)
                onAspect: (itemId, value) => renderer.tileAspect(itemId, value)
                onFailed: itemId => renderer.tileFailed(itemId)
            }
            CollageTileHitLayer {
                id: cellHit
                anchors.fill: parent
                wall: renderer.wall
                slot: cell.index
                itemId: cell.tile.itemId
                onMenuRequested: (x, y) => renderer.openMenu(cellHit, x, y, cell.index, cell.tile.itemId)
            }
            CollageTileGestures {
                anchors.fill: parent
                showHoverControls: renderer.wall.showHoverControls
                hoverTags: renderer.wall.tagRevision >= 0 ? renderer.wall.tagsFor(cell.tile.itemId) : []
                onPreviousRequested: renderer.wall.clickTile(cell.index, false, renderer.wall.now())
                onNextRequested: renderer.wall.clickTile(cell.index, true, renderer.wall.now())
            }
        }
    }

    // Flow: strips of tiles scrolling endlessly, their positions taken from the clock each frame.
    FrameAnimation {
        running: renderer.layoutName === "flow" && renderer.visible
        onTriggered: renderer.offsets = renderer.wall.flowOffsets()
    }

    Repeater {
        model: renderer.layoutName === "flow" ? renderer.wall.flowStrips.length : 0
        delegate: Item {
            id: strip
            required property int index
            readonly property var info: renderer.wall.flowStrips[index]
            readonly property bool horizontal: info.horizontal
            readonly property int tileCount: info.tiles.length
            x: horizontal ? 0 : info.crossStart
            y: horizontal ? info.crossStart : 0
            width: horizontal ? renderer.width : info.thickness
            height: horizontal ? info.thickness : renderer.height
            clip: true

            Item {
                id: track
                readonly property real shift: -(renderer.offsets[strip.index] || 0)
                x: strip.horizontal ? shift : 0
                y: strip.horizontal ? 0 : shift

                Repeater {
                    model: strip.tileCount * strip.info.copies
                    delegate: Item {
                        id: flowTile
                        required property int index
                        readonly property var tile: strip.info.tiles[index % strip.tileCount]
                        readonly property real along: tile.start + Math.floor(index / strip.tileCount) * strip.info.cycle
                        x: strip.horizontal ? along : 0
                        y: strip.horizontal ? 0 : along
                        width: strip.horizontal ? tile.length : strip.info.thickness
                        height: strip.horizontal ? strip.info.thickness : tile.length

                        CollageTileView {
                            anchors.fill: parent
                            itemId: flowTile.tile.itemId
                            source: flowTile.tile.url
                            cornerRadius: renderer.cornerRadius
                            // Across the strip exactly its thickness; along it room for a 2:3 photo.
                            // A landscape photo then decodes at the width it is drawn, not wider.
                            decodeSize: strip.horizontal
                                ? Qt.size(renderer.decodeEdge(strip.info.thickness * 1.5), renderer.decodeEdge(strip.info.thickness))
                                : Qt.size(renderer.decodeEdge(strip.info.thickness), renderer.decodeEdge(strip.info.thickness * 1.5))
                            onAspect: (itemId, value) => renderer.tileAspect(itemId, value)
                            onFailed: itemId => renderer.tileFailed(itemId)
                        }
                        CollageTileHitLayer {
                            id: flowHit
                            anchors.fill: parent
                            wall: renderer.wall
                            slot: flowTile.tile.slot
                            itemId: flowTile.tile.itemId
                            onMenuRequested: (x, y) => renderer.openMenu(flowHit, x, y, flowTile.tile.slot, flowTile.tile.itemId)
                        }
                        CollageTileGestures {
                            anchors.fill: parent
                            showHoverControls: renderer.wall.showHoverControls
                            hoverTags: renderer.wall.tagRevision >= 0 ? renderer.wall.tagsFor(flowTile.tile.itemId) : []
                            onPreviousRequested: renderer.wall.clickTile(flowTile.tile.slot, false, renderer.wall.now())
                            onNextRequested: renderer.wall.clickTile(flowTile.tile.slot, true, renderer.wall.now())
                        }
                    }
                }
            }
        }
    }

    // Scatter: photos dropped on a table, the latest on top.
    Rectangle {
        anchors.fill: parent
        visible: renderer.layoutName === "scatter"
        gradient: Gradient {
            GradientStop { position: 0; color: "#2e2722" }
            GradientStop { position: 1; color: "#171310" }
        }
    }

    property var scatterAspects: ({})

    // The pile keyed by item, so a photo keeps its card when others land on top or the
    // oldest leaves: only the new card is made (and dropped in), nothing else reloads.
    ListModel { id: pile }

    function syncPile() {
        const drops = renderer.layoutName === "scatter" ? renderer.wall.drops : []
        const order = {}
        for (let i = 0; i < drops.length; ++i)
            order[drops[i].itemId] = i
        for (let i = pile.count - 1; i >= 0; --i) {
            if (order[pile.get(i).itemId] === undefined)
                pile.remove(i)
        }
        const known = {}
        for (let i = 0; i < pile.count; ++i)
            known[pile.get(i).itemId] = i
        for (let i = 0; i < drops.length; ++i) {
            const d = drops[i]
            const entry = { itemId: d.itemId, url: d.url.toString(), ux: d.x, uy: d.y, turn: d.rotation,
                            size: d.scale, depth: i }
            if (known[d.itemId] === undefined)
                pile.append(entry)
            else
                pile.set(known[d.itemId], entry)
        }
    }

    Connections {
        target: renderer.wall
        function onDropsChanged() { renderer.syncPile() }
        function onLayoutChanged() { renderer.syncPile() }
    }

    Repeater {
        model: pile
        delegate: Item {
            id: card
            required property string itemId
            required property string url
            required property real ux
            required property real uy
            required property real turn
            required property real size
            required property int depth
            readonly property real aspect: renderer.scatterAspects[itemId] || 1.5
            // The base photo is a good third of the screen's shorter side.
            readonly property real base: Math.min(renderer.width, renderer.height) * 0.4 * size
            readonly property real border: Math.max(4, base * 0.035)
            // Wide and tall photos grow along their long side, never wider or taller than the table.
            width: Math.min(base * Math.sqrt(aspect),
                            renderer.width * 0.8, (renderer.height * 0.8 - 2 * border) * aspect + 2 * border)
            height: (width - 2 * border) / aspect + 2 * border
            // Centred where it fell, but kept on the table.
            x: Math.max(0, Math.min(renderer.width - width, ux * renderer.width - width / 2))
            y: Math.max(0, Math.min(renderer.height - height, uy * renderer.height - height / 2))
            rotation: turn
            z: depth

            // Dropped onto the table: it falls from a little above and settles.
            scale: 1
            opacity: 1
            Component.onCompleted: if (renderer.wall.running) landing.start()
            ParallelAnimation {
                id: landing
                NumberAnimation { target: card; property: "scale"; from: 1.35; to: 1; duration: 900; easing.type: Easing.InOutQuad }
                NumberAnimation { target: card; property: "opacity"; from: 0; to: 1; duration: 900; easing.type: Easing.InOutQuad }
            }

            Rectangle {
                // A soft shadow under the print.
                x: card.border * 0.8
                y: card.border * 1.2
                width: card.width
                height: card.height
                color: "#000000"
                opacity: 0.35
                radius: 2
            }
            Rectangle {
                anchors.fill: parent
                color: "#f4f1ea"
                radius: 2
            }
            CollageTileView {
                anchors.fill: parent
                anchors.margins: card.border
                itemId: card.itemId
                source: card.url
                decodeSize: renderer.decodeSquare(Math.max(card.width, card.height))
                onAspect: (itemId, value) => {
                    renderer.tileShown()
                    if (renderer.scatterAspects[itemId] !== value) {
                        const known = Object.assign({}, renderer.scatterAspects)
                        known[itemId] = value
                        renderer.scatterAspects = known
                    }
                }
                onFailed: itemId => renderer.tileFailed(itemId)
            }
            CollageTileHitLayer {
                id: cardHit
                anchors.fill: parent
                wall: renderer.wall
                itemId: card.itemId
                onMenuRequested: (x, y) => renderer.openMenu(cardHit, x, y, -1, card.itemId)
            }
        }
    }

    CollageContextMenu {
        id: menu
        anchors.fill: parent
        z: 100
        flowWall: renderer.layoutName === "flow"
        autoCycling: renderer.wall.autoCycling
        hostItems: renderer.hostMenuItems
        // While a menu is open the wall holds still.
        onMenuOpened: menuId => renderer.wall.menuOpened(menuId)
        onMenuClosed: menuId => renderer.wall.menuClosed(menuId)
        onOpenFullRequested: slot => {
            if (slot >= 0)
                renderer.wall.doubleClickTile(slot)
            else
                renderer.wall.doubleClickItem(renderer.menuItemId)
        }
        onToggleAutoCycleRequested: renderer.wall.toggleFlowAutoCycle()
        onHostItemChosen: (id, slot) => renderer.hostMenuItemChosen(id, slot)
    }

    CollageIntroOverlay {
        anchors.fill: parent
        z: 101
        visible: renderer.showIntro
        onDismissed: renderer.introDismissed()
    }
}
