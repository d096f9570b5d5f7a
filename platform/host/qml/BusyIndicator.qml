import QtQuick 2.15
import com.lumenpress.controls 2.0

// Shows that work is under way: a ring of dots in steps of grey with a word below. It is drawn
// once and stays still, since a moving picture would make an e-ink panel flash.
Item {
    id: indicator

    property bool running: true
    property string label: qsTr("@Loading")

    implicitWidth: Math.round(72 * Global.dp)
    implicitHeight: implicitWidth + (label !== "" ? caption.implicitHeight + Math.round(8 * Global.dp) : 0)
    visible: running

    Item {
        id: ring
        width: Math.min(indicator.width, indicator.height - (caption.visible ? caption.height + Math.round(8 * Global.dp) : 0))
        height: width
        anchors.horizontalCenter: parent.horizontalCenter

        Repeater {
            model: 8
            Rectangle {
                readonly property real angle: index * Math.PI / 4
                width: ring.width * 0.2
                height: width
                radius: width / 2
                x: ring.width / 2 + Math.sin(angle) * ring.width * 0.38 - width / 2
                y: ring.height / 2 - Math.cos(angle) * ring.height * 0.38 - height / 2
                color: Qt.rgba(index / 9, index / 9, index / 9, 1)
            }
        }
    }
    Text {
        id: caption
        objectName: "busyLabel"
        visible: indicator.label !== ""
        anchors.top: ring.bottom
        anchors.topMargin: Math.round(8 * Global.dp)
        anchors.horizontalCenter: parent.horizontalCenter
        text: indicator.label
        font.pixelSize: Math.round(18 * Global.dp)
        color: "black"
    }
}
