import QtQuick 2.15
import com.lumenpress.controls 2.0

// A modal dialog: it covers its parent, takes every touch outside its box, and centres its
// content in a framed white box.
Item {
    id: container

    default property alias content: box.data
    property int boxWidth: Math.min(parent ? parent.width - Math.round(48 * Global.dp) : 0, Math.round(480 * Global.dp))
    property alias boxHeight: box.height
    property bool destroyOnClose: false

    signal closed()

    function open() { visible = true }
    function close() {
        if (!visible) return
        visible = false
        closed()
        if (destroyOnClose) destroy()
    }

    anchors.fill: parent
    visible: false
    z: 1000

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(1, 1, 1, 0.7)
        MouseArea {
            anchors.fill: parent
            onClicked: {}
        }
    }
    Rectangle {
        id: box
        objectName: "dialogBox"
        anchors.centerIn: parent
        width: container.boxWidth
        height: childrenRect.height
        color: "white"
        border.color: "black"
        border.width: Math.max(2, Math.round(3 * Global.dp))
        radius: Math.round(8 * Global.dp)
    }
}
