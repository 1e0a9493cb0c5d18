import QtQuick

// A short notice that fades in while it has text and out when the text clears; the last
// words stay on it while it fades.
Rectangle {
    id: toast

    property string text: ""
    property real unit: 1
    property string shownText: ""

    onTextChanged: if (text.length > 0) shownText = text

    width: label.implicitWidth + 2 * Math.round(20 * unit)
    height: label.implicitHeight + 2 * Math.round(10 * unit)
    radius: height / 2
    color: "#CC1C1C1E"
    border.color: "#26FFFFFF"
    opacity: text.length > 0 ? 1 : 0
    visible: text.length > 0 || opacity > 0
    Behavior on opacity { NumberAnimation { duration: 250; easing.type: Easing.InOutQuad } }

    Text {
        id: label
        anchors.centerIn: parent
        text: toast.shownText
        color: "white"
        font.pixelSize: Math.round(16 * toast.unit)
        font.weight: Font.Medium
    }
}
