import QtQuick
import Sorvane.Views

// The pointer over a slide: moving it brings the controls up, the wheel zooms, a double click
// zooms to the smart level and back, a drag moves a zoomed slide, a pinch zooms. The view model
// decides what each gesture may do under the settings.
MouseArea {
    id: gestures

    required property SlideshowViewModel viewModel
    property point last

    hoverEnabled: true
    acceptedButtons: Qt.LeftButton

    onPositionChanged: mouse => {
        if (pressed && viewModel.zoomLevel > 1)
            viewModel.pan(mouse.x - last.x, mouse.y - last.y)
        else
            viewModel.revealControls()
        last = Qt.point(mouse.x, mouse.y)
    }
    onPressed: mouse => last = Qt.point(mouse.x, mouse.y)
    onDoubleClicked: viewModel.smartZoom()
    onWheel: wheel => {
        // Touchpads give points, wheels give eighths of a degree: a notch is 15.
        const delta = wheel.pixelDelta.y !== 0 ? wheel.pixelDelta.y : wheel.angleDelta.y / 8
        viewModel.scrollZoom(delta)
    }

    PinchHandler {
        target: null
        onActiveScaleChanged: if (active) gestures.viewModel.pinchChanged(activeScale)
        onActiveChanged: if (!active) gestures.viewModel.pinchEnded()
    }
}
