import QtQuick
import Sorvane.Views

// The on-screen controls of a slideshow window: previous, play/pause, next, the interval,
// the transition style, the filter, the control scope and exit. They fade in while the view
// model shows them; the pointer resting on them keeps them up. Every button acts as its key
// would, so the control scope decides which windows follow.
Item {
    id: controls

    required property SlideshowViewModel viewModel
    required property SlideshowViewState viewState

    // After exit was asked for (the manager, when there is one, has already acted on it).
    signal exitRequested()

    readonly property real buttonSize: viewState.controlSize === "small" ? 30 : (viewState.controlSize === "large" ? 48 : 38)
    readonly property real gap: Math.round(buttonSize * 0.2)
    readonly property bool shown: viewModel.showControls
    property bool menuOpen: false

    width: panel.width
    height: panel.height
    opacity: shown ? 1 : 0
    visible: shown || opacity > 0
    Behavior on opacity { NumberAnimation { duration: 220; easing.type: Easing.InOutQuad } }
    onShownChanged: if (!shown) menuOpen = false

    HoverHandler {
        onHoveredChanged: if (hovered) controls.viewModel.revealControls()
    }

    Rectangle {
        id: panel
        objectName: "panel"
        width: buttons.width + 2 * controls.gap * 2
        height: controls.buttonSize + 2 * controls.gap
        radius: height / 2
        color: Qt.rgba(0, 0, 0, controls.viewState.controlOpacity)
        border.color: "#26FFFFFF"
        border.width: 1

        Row {
            id: buttons
            anchors.centerIn: parent
            spacing: controls.gap

            ControlButton {
                objectName: "previousButton"
                symbol: "chevron.left"
                size: controls.buttonSize
                onClicked: controls.viewState.perform(Slideshow.Action.PreviousImage)
            }
            ControlButton {
                objectName: "playPauseButton"
                symbol: controls.viewModel.isPaused ? "play.fill" : "pause.fill"
                size: controls.buttonSize
                onClicked: controls.viewState.perform(Slideshow.Action.StartStop)
            }
            ControlButton {
                objectName: "nextButton"
                symbol: "chevron.right"
                size: controls.buttonSize
                onClicked: controls.viewState.perform(Slideshow.Action.NextImage)
            }
            Rectangle { width: 1; height: controls.buttonSize * 0.6; anchors.verticalCenter: parent.verticalCenter; color: "#33FFFFFF" }
            ControlButton {
                objectName: "intervalDownButton"
                symbol: "minus"
                size: controls.buttonSize
                onClicked: controls.viewState.perform(Slideshow.Action.DecreaseInterval)
            }
            Text {
                objectName: "interval"
                anchors.verticalCenter: parent.verticalCenter
                text: Math.round(controls.viewModel.slideDuration) + " s"
                color: "white"
                font.pixelSize: Math.round(controls.buttonSize * 0.36)
                font.weight: Font.DemiBold
            }
            ControlButton {
                objectName: "intervalUpButton"
                symbol: "plus"
                size: controls.buttonSize
                onClicked: controls.viewState.perform(Slideshow.Action.IncreaseInterval)
            }
            Rectangle { width: 1; height: controls.buttonSize * 0.6; anchors.verticalCenter: parent.verticalCenter; color: "#33FFFFFF" }
            ControlButton {
                id: transitionButton
                objectName: "transitionButton"
                symbol: "circle.righthalf.fill"
                size: controls.buttonSize
                highlighted: controls.menuOpen
                onClicked: controls.menuOpen = !controls.menuOpen
            }
            ControlButton {
                objectName: "filterButton"
                symbol: "camera.filters"
                size: controls.buttonSize
                highlighted: controls.viewModel.imageFilter !== Slideshow.ImageFilter.None
                onClicked: controls.viewState.perform(Slideshow.Action.CycleImageFilter)
            }
            ControlButton {
                objectName: "scopeButton"
                visible: controls.viewState.scopeLabel.length > 0
                symbol: "display.2"
                label: controls.viewState.scopeLabel
                size: controls.buttonSize
                onClicked: controls.viewState.cycleControlScope()
            }
            ControlButton {
                objectName: "exitButton"
                symbol: "xmark"
                size: controls.buttonSize
                onClicked: {
                    controls.viewState.perform(Slideshow.Action.Exit)
                    controls.exitRequested()
                }
            }
        }
    }

    // The transition styles, above their button.
    Rectangle {
        id: menu
        objectName: "transitionMenu"
        visible: controls.menuOpen
        x: Math.max(0, Math.min(controls.width - width, transitionButton.mapToItem(controls, 0, 0).x + transitionButton.width / 2 - width / 2))
        y: -height - controls.gap
        width: choices.width + 2 * controls.gap
        height: choices.height + 2 * controls.gap
        radius: Math.round(controls.buttonSize * 0.3)
        color: Qt.rgba(0.11, 0.11, 0.12, Math.max(0.85, controls.viewState.controlOpacity))
        border.color: "#26FFFFFF"

        Column {
            id: choices
            anchors.centerIn: parent
            Repeater {
                model: controls.viewState.transitionChoices()
                delegate: Rectangle {
                    id: choice
                    required property var modelData
                    readonly property bool chosen: modelData.style === controls.viewState.transitionStyle
                    objectName: "transitionChoice"
                    width: Math.max(choiceText.implicitWidth + controls.buttonSize, controls.buttonSize * 4)
                    height: controls.buttonSize * 0.8
                    radius: height / 4
                    color: choiceArea.containsMouse ? "#2EFFFFFF" : "transparent"
                    Text {
                        id: choiceText
                        anchors.verticalCenter: parent.verticalCenter
                        x: controls.buttonSize * 0.5
                        text: choice.modelData.label
                        color: "white"
                        font.pixelSize: Math.round(controls.buttonSize * 0.36)
                        font.weight: choice.chosen ? Font.Bold : Font.Normal
                    }
                    Rectangle {
                        visible: choice.chosen
                        anchors.verticalCenter: parent.verticalCenter
                        x: controls.buttonSize * 0.2
                        width: controls.buttonSize * 0.14
                        height: width
                        radius: width / 2
                        color: "white"
                    }
                    MouseArea {
                        id: choiceArea
                        anchors.fill: parent
                        hoverEnabled: true
                        onClicked: {
                            controls.viewState.chooseTransitionStyle(choice.modelData.style)
                            controls.menuOpen = false
                        }
                    }
                }
            }
        }
    }
}
