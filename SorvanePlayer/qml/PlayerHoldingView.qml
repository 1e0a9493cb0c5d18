import QtQuick

Rectangle {
    id: view
    property string displayName: ""
    property url logoSource

    color: "black"
    readonly property real unit: Math.min(width, height) / 100

    Column {
        anchors.centerIn: parent
        spacing: view.unit * 3
        opacity: 0
        NumberAnimation on opacity { from: 0; to: 1; duration: 900; easing.type: Easing.InOutQuad }

        Image {
            id: logo
            anchors.horizontalCenter: parent.horizontalCenter
            visible: view.logoSource.toString().length > 0 && status === Image.Ready
            source: view.logoSource
            asynchronous: true
            fillMode: Image.PreserveAspectFit
            sourceSize: Qt.size(Math.round(view.unit * 18), Math.round(view.unit * 18))
            width: Math.min(implicitWidth, view.unit * 18)
            height: Math.min(implicitHeight, view.unit * 18)
            smooth: true
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: view.displayName.length > 0
            text: view.displayName
            color: "#F2F2F2"
            font.pixelSize: Math.round(view.unit * 5)
            font.weight: Font.Light
            horizontalAlignment: Text.AlignHCenter
            width: Math.min(implicitWidth, view.width * 0.8)
            elide: Text.ElideRight
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Waiting for photos"
            color: "#8E8E93"
            font.pixelSize: Math.round(view.unit * 2.6)
            font.letterSpacing: view.unit * 0.1
        }
    }
}
