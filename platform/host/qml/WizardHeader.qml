import QtQuick 2.15
import com.lumenpress.controls 2.0

// The top of a step of the device's setup wizard: its title and how far the owner has come.
Rectangle {
    id: header

    property string title: ""
    property int step: 0
    property int stepCount: 0

    implicitHeight: Math.round(72 * Global.dp)
    color: "white"

    Text {
        objectName: "wizardTitle"
        anchors.left: parent.left
        anchors.leftMargin: Math.round(24 * Global.dp)
        anchors.right: counter.left
        anchors.verticalCenter: parent.verticalCenter
        text: header.title
        elide: Text.ElideRight
        font.pixelSize: Math.round(24 * Global.dp)
        font.bold: true
        color: "black"
    }
    Row {
        id: counter
        objectName: "wizardSteps"
        visible: header.stepCount > 1
        anchors.right: parent.right
        anchors.rightMargin: Math.round(24 * Global.dp)
        anchors.verticalCenter: parent.verticalCenter
        spacing: Math.round(8 * Global.dp)
        Repeater {
            model: header.stepCount
            Rectangle {
                width: Math.round(12 * Global.dp)
                height: width
                radius: width / 2
                border.color: "black"
                border.width: Math.max(1, Math.round(2 * Global.dp))
                color: index <= header.step ? "black" : "white"
            }
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Math.max(1, Math.round(2 * Global.dp))
        color: "black"
    }
}
