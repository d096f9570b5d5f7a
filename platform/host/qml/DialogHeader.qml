import QtQuick 2.15
import com.lumenpress.controls 2.0

// The title line of a dialog, with a close button where the dialog may be dismissed.
Item {
    id: header

    property alias text: title.text
    property bool closeVisible: true

    signal closeClicked()

    width: parent ? parent.width : implicitWidth
    implicitHeight: Math.max(Math.round(56 * Global.dp), title.implicitHeight + Math.round(24 * Global.dp))

    Text {
        id: title
        objectName: "dialogTitle"
        anchors.left: parent.left
        anchors.leftMargin: Math.round(20 * Global.dp)
        anchors.right: close.left
        anchors.verticalCenter: parent.verticalCenter
        wrapMode: Text.Wrap
        font.pixelSize: Math.round(22 * Global.dp)
        font.bold: true
        color: "black"
    }
    BitmapButton {
        id: close
        objectName: "dialogClose"
        visible: header.closeVisible
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: visible ? Math.round(56 * Global.dp) : 0
        height: Math.round(56 * Global.dp)
        glyph: "✕"
        onClicked: header.closeClicked()
    }
    DottedSeparator {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Math.round(12 * Global.dp)
        anchors.bottomMargin: 0
    }
}
