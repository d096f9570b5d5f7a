import QtQuick 2.15

// A touch area that reports a click a moment after the press is drawn, so that the owner sees on
// the slow panel what they touched before the screen changes.
MouseArea {
    id: area

    property int delay: 150

    signal delayedClicked()

    onClicked: timer.restart()

    Timer {
        id: timer
        interval: area.delay
        onTriggered: area.delayedClicked()
    }
}
