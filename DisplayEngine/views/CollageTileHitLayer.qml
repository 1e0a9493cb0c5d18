import QtQuick
import Sorvane.Views

// Takes the clicks on one tile: a single click on the left half shows the slot's previous
// item, on the right half the next; a double click opens the photo full-screen; the right
// button asks for the context menu. A single click waits out the double-click interval, so
// the first click of a double click does not step the slot.
MouseArea {
    id: hit

    required property CollageWallModel wall
    property int slot: -1        // -1 for a photo of the Scatter table
    property string itemId

    signal menuRequested(real x, real y)

    acceptedButtons: Qt.LeftButton | Qt.RightButton

    property bool pendingRightHalf: false
    property real pendingAt: 0

    function singleClick() {
        if (hit.slot >= 0)
            hit.wall.clickTile(hit.slot, hit.pendingRightHalf, hit.pendingAt)
        else
            hit.wall.raiseItem(hit.itemId)
    }

    onClicked: mouse => {
        if (mouse.button === Qt.RightButton) {
            pending.stop()
            hit.menuRequested(mouse.x, mouse.y)
            return
        }
        hit.pendingRightHalf = mouse.x >= hit.width / 2
        hit.pendingAt = hit.wall.now()
        pending.restart()
    }

    onDoubleClicked: mouse => {
        if (mouse.button !== Qt.LeftButton)
            return
        pending.stop()
        if (hit.slot >= 0)
            hit.wall.doubleClickTile(hit.slot)
        else
            hit.wall.doubleClickItem(hit.itemId)
    }

    Timer {
        id: pending
        interval: Qt.styleHints.mouseDoubleClickInterval
        onTriggered: hit.singleClick()
    }
}
