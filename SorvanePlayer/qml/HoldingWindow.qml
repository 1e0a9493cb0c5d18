import QtQuick

// A black screen that says the player is waiting, with the bundle's branding when
// there is some. Shown when there is nothing to play.
Window {
    id: window
    required property string displayName
    required property url logoSource

    title: "SorvanePlayer"
    color: "black"

    PlayerHoldingView {
        anchors.fill: parent
        displayName: window.displayName
        logoSource: window.logoSource
    }
}
