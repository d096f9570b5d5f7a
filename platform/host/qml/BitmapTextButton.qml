import QtQuick 2.15
import com.lumenpress.controls 2.0

// A button with a picture (or a sign) before its text.
TextButton {
    id: button

    property url source: ""
    property string glyph: ""

    implicitWidth: row.implicitWidth + Math.round(32 * Global.dp)
    showText: false

    Row {
        id: row
        anchors.centerIn: parent
        spacing: Math.round(8 * Global.dp)
        Image {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.source != ""
            height: button.height * 0.55
            width: height
            source: button.source
            fillMode: Image.PreserveAspectFit
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.source == "" && button.glyph !== ""
            text: button.glyph
            font.pixelSize: button.font.pixelSize
            color: !button.enabled ? "#9a9a9a" : button.pressed ? "white" : "black"
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            font: button.font
            color: !button.enabled ? "#9a9a9a" : button.pressed ? "white" : "black"
        }
    }
}
