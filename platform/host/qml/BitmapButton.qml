import QtQuick 2.15
import com.lumenpress.controls 2.0

// A button that shows a picture, or a sign where there is no picture.
Item {
    id: button

    property url source: ""
    property string glyph: ""
    property bool bordered: false
    readonly property bool pressed: area.pressed

    signal clicked()

    implicitWidth: Math.round(56 * Global.dp)
    implicitHeight: implicitWidth

    Rectangle {
        anchors.fill: parent
        radius: Math.round(4 * Global.dp)
        color: button.pressed ? "black" : "transparent"
        border.color: "black"
        border.width: button.bordered ? Math.max(1, Math.round(2 * Global.dp)) : 0
    }
    Image {
        anchors.centerIn: parent
        width: parent.width * 0.7
        height: parent.height * 0.7
        visible: button.source != ""
        source: button.source
        fillMode: Image.PreserveAspectFit
        sourceSize.width: width
    }
    Text {
        anchors.centerIn: parent
        visible: button.source == ""
        text: button.glyph
        font.pixelSize: button.height * 0.6
        color: !button.enabled ? "#9a9a9a" : button.pressed ? "white" : "black"
    }
    MouseArea {
        id: area
        anchors.fill: parent
        enabled: button.enabled
        onClicked: button.clicked()
    }
}
