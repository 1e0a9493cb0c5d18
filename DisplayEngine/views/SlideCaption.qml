import QtQuick

// The file name and the place in the show, small and quiet in the lower left.
Item {
    id: caption
    property string text: ""
    property string progress: ""
    readonly property string line: [text, progress].filter(part => part.length > 0).join("   ·   ")

    visible: line.length > 0
    implicitHeight: label.implicitHeight + 12
    implicitWidth: label.implicitWidth + 24

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: "#66000000"
    }
    Text {
        id: label
        anchors.centerIn: parent
        text: caption.line
        color: "#EDEDED"
        font.pixelSize: Math.max(13, Math.round(Screen.height / 64))
        font.weight: Font.Medium
        elide: Text.ElideMiddle
        maximumLineCount: 1
        width: Math.min(implicitWidth, caption.parent ? caption.parent.width * 0.6 : implicitWidth)
    }
}
