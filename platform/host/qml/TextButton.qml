import QtQuick 2.15
import com.lumenpress.controls 2.0

// A button with a text. Pressed, it turns black on white to white on black, which the panel
// shows at once; there is no animation.
Rectangle {
    id: button

    property alias text: label.text
    property alias font: label.font
    property bool bordered: true
    property bool showText: true
    property color textColor: "black"
    readonly property bool pressed: area.pressed

    signal clicked()

    implicitWidth: Math.max(Math.round(120 * Global.dp), label.implicitWidth + Math.round(32 * Global.dp))
    implicitHeight: Math.round(56 * Global.dp)
    color: pressed ? "black" : "white"
    border.color: enabled ? "black" : "#9a9a9a"
    border.width: bordered ? Math.max(1, Math.round((pressed ? 3 : 2) * Global.dp)) : 0
    opacity: 1

    Text {
        id: label
        visible: button.showText
        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - Math.round(16 * Global.dp))
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        font.pixelSize: Math.round(20 * Global.dp)
        color: !button.enabled ? "#9a9a9a" : button.pressed ? "white" : button.textColor
    }
    MouseArea {
        id: area
        anchors.fill: parent
        enabled: button.enabled
        onClicked: button.clicked()
    }
}
