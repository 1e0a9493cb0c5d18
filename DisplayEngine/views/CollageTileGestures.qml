import QtQuick

// The hover controls of one tile: previous, the item's tags, next. They fade in while the pointer
// moves over the tile and out after it rests for idleHideAfter seconds or leaves. Only the two
// buttons take clicks; every other click falls through to the wall's own hit handling.
Item {
    id: gestures

    property bool showHoverControls: true
    readonly property bool controlsVisible: showHoverControls && idle.shown
    property var hoverTags: [] // [{ name, color }]
    property real idleHideAfter: 2.5
    property alias hideTimer: hideTimer

    signal previousRequested()
    signal nextRequested()

    function pointerMoved() {
        if (!showHoverControls)
            return
        idle.restingMs = 0
        idle.shown = true
    }

    // Counts pointer rest time; the controls go once it reaches idleHideAfter.
    function idleElapsed(seconds) {
        if (!idle.shown)
            return
        idle.restingMs += Math.round(seconds * 1000)
        if (idle.restingMs >= Math.round(idleHideAfter * 1000))
            hide()
    }

    function hide() {
        idle.shown = false
        idle.restingMs = 0
    }

    onShowHoverControlsChanged: if (!showHoverControls) hide()

    QtObject {
        id: idle
        property bool shown: false
        property int restingMs: 0
    }

    // Ticks only while the controls are up, so a resting wall costs nothing.
    Timer {
        id: hideTimer
        interval: 100
        repeat: true
        running: idle.shown
        onTriggered: gestures.idleElapsed(hideTimer.interval / 1000)
    }

    // Only a pointer that moves in the window counts: a Flow strip scrolling tiles under a resting
    // pointer also reports hover, at the same window position, and must not wake the controls.
    HoverHandler {
        id: hover
        property point lastScenePosition: Qt.point(-1, -1)
        enabled: gestures.showHoverControls
        onPointChanged: {
            if (!hovered || point.scenePosition === lastScenePosition)
                return
            lastScenePosition = point.scenePosition
            gestures.pointerMoved()
        }
        onHoveredChanged: if (!hovered) gestures.hide()
    }

    readonly property real shortSide: Math.min(width, height)
    readonly property real barMargin: Math.round(Math.max(4, Math.min(12, shortSide * 0.04)))
    // A very narrow tile still fits both buttons, only smaller.
    readonly property real barHeight: Math.round(Math.min(Math.max(26, Math.min(40, shortSide * 0.16)),
                                                          (width - 2 * barMargin) / 2.3))
    readonly property real barPadding: Math.round(barHeight * 0.12)
    readonly property real chipHeight: barHeight - 2 * Math.round(barHeight * 0.18)
    readonly property real chipSpacing: Math.round(barHeight * 0.15)
    readonly property real chipMinWidth: chipHeight * 2.2
    readonly property real chipInset: Math.round(chipHeight * 0.32)
    readonly property real chipDot: Math.round(chipHeight * 0.42)
    // Everything in a chip but its name: both insets, the dot and the gap after it.
    readonly property real chipChrome: chipInset * 2.6 + chipDot

    // Room left for the chips once the bar's padding and both buttons are placed.
    readonly property real tagRoom: Math.max(0, width - 2 * barMargin - 2 * barPadding - 2 * barHeight - 2 * chipSpacing)
    readonly property var tags: hoverTags ? Array.from(hoverTags) : []

    FontMetrics {
        id: chipMetrics
        font.pixelSize: Math.round(gestures.chipHeight * 0.52)
        font.weight: Font.Medium
    }

    // Whole names while they fit; once one does not, a "+n" stands for the rest. Only a first chip
    // that fits nowhere whole is cut short, so a narrow tile still names one tag.
    readonly property var chipPlan: {
        if (chipMetrics.font.pixelSize <= 0) // also ties the plan to the font it measures with
            return { widths: [], counted: false }
        const natural = tags.map(tag => chipChrome + Math.ceil(chipMetrics.advanceWidth(String(tag.name))))
        const widths = []
        let used = 0
        for (let i = 0; i < natural.length; ++i) {
            const gap = widths.length > 0 ? chipSpacing : 0
            const rest = natural.slice(i).reduce((sum, w) => sum + w + chipSpacing, 0) - chipSpacing
            if (used + gap + rest <= tagRoom) {
                widths.push(...natural.slice(i))
                used += gap + rest
                break
            }
            const countRoom = i < natural.length - 1 ? chipSpacing + chipMinWidth : 0
            if (used + gap + natural[i] + countRoom <= tagRoom) {
                widths.push(natural[i])
                used += gap + natural[i]
                continue
            }
            if (widths.length === 0 && tagRoom - countRoom >= chipMinWidth) {
                widths.push(tagRoom - countRoom)
                used = widths[0]
            }
            break
        }
        const hidden = natural.length - widths.length
        const countRoom = (widths.length > 0 ? chipSpacing : 0) + chipMinWidth
        return { widths: widths, counted: hidden > 0 && used + countRoom <= tagRoom }
    }
    readonly property int shownTags: chipPlan.widths.length
    readonly property int hiddenTags: tags.length - shownTags
    readonly property bool countsHidden: chipPlan.counted

    Rectangle {
        id: bar
        objectName: "hoverBar"
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: gestures.barMargin
        width: content.width + 2 * gestures.barPadding
        height: gestures.barHeight
        radius: height / 2
        color: "#C71C1C1E"
        border.color: "#26FFFFFF"
        border.width: 1

        opacity: gestures.controlsVisible ? 1 : 0
        visible: gestures.controlsVisible || opacity > 0
        enabled: gestures.controlsVisible
        Behavior on opacity { NumberAnimation { duration: 180; easing.type: Easing.InOutQuad } }

        Row {
            id: content
            x: gestures.barPadding
            height: parent.height
            spacing: gestures.chipSpacing

            // Inline components do not see this file's ids, so the size comes in as a property.
            component StepButton: Item {
                id: button
                property alias symbol: icon.symbol
                property real size: 32
                signal clicked()
                width: size
                height: size
                Rectangle {
                    anchors.centerIn: parent
                    width: parent.width - 6
                    height: width
                    radius: width / 2
                    color: area.pressed ? "#4DFFFFFF" : (area.containsMouse ? "#33FFFFFF" : "transparent")
                }
                SymbolIcon {
                    id: icon
                    anchors.centerIn: parent
                    size: Math.round(button.size * 0.48)
                    opacity: area.pressed ? 0.6 : 1
                }
                MouseArea {
                    id: area
                    anchors.fill: parent
                    hoverEnabled: true
                    onClicked: button.clicked()
                }
            }

            StepButton {
                objectName: "previousButton"
                anchors.verticalCenter: parent.verticalCenter
                size: gestures.barHeight
                symbol: "chevron.left"
                onClicked: gestures.previousRequested()
            }

            Row {
                anchors.verticalCenter: parent.verticalCenter
                visible: gestures.shownTags > 0 || gestures.countsHidden
                spacing: gestures.chipSpacing

                Repeater {
                    model: gestures.tags.slice(0, gestures.shownTags)
                    delegate: Rectangle {
                        id: chip
                        required property var modelData
                        required property int index
                        property color tagColor: modelData.color || "#8E8E93"
                        readonly property real inset: gestures.chipInset
                        readonly property real dotSize: gestures.chipDot
                        objectName: "tagChip"
                        height: gestures.chipHeight
                        width: gestures.chipPlan.widths[index] || 0
                        radius: height / 2
                        color: Qt.rgba(tagColor.r, tagColor.g, tagColor.b, 0.32)
                        border.color: Qt.rgba(tagColor.r, tagColor.g, tagColor.b, 0.7)
                        border.width: 1

                        Rectangle {
                            id: dot
                            x: chip.inset
                            anchors.verticalCenter: parent.verticalCenter
                            width: chip.dotSize
                            height: width
                            radius: width / 2
                            color: chip.tagColor
                        }
                        Text {
                            id: name
                            anchors.left: dot.right
                            anchors.leftMargin: chip.inset * 0.6
                            anchors.right: parent.right
                            anchors.rightMargin: chip.inset
                            anchors.verticalCenter: parent.verticalCenter
                            text: String(chip.modelData.name)
                            elide: Text.ElideRight
                            maximumLineCount: 1
                            color: "white"
                            font: chipMetrics.font
                        }
                    }
                }

                Text {
                    objectName: "moreTags"
                    visible: gestures.countsHidden
                    anchors.verticalCenter: parent.verticalCenter
                    width: visible ? gestures.chipMinWidth : 0
                    horizontalAlignment: Text.AlignHCenter
                    text: "+" + gestures.hiddenTags
                    color: "#D1D1D6"
                    font: chipMetrics.font
                }
            }

            StepButton {
                objectName: "nextButton"
                anchors.verticalCenter: parent.verticalCenter
                size: gestures.barHeight
                symbol: "chevron.right"
                onClicked: gestures.nextRequested()
            }
        }
    }
}
