import QtQuick 2.15
import com.lumenpress.controls 2.0

// The bar at the top of a view: an optional back button, a title, and room for actions on the right.
Rectangle {
    id: header

    property string title: ""
    property bool backVisible: false
    default property alias actions: actionRow.data

    signal backClicked()

    implicitHeight: Math.round(64 * Global.dp)
    color: "white"

    BitmapButton {
        id: back
        objectName: "headerBack"
        visible: header.backVisible
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        width: visible ? height : 0
        height: parent.height
        glyph: "‹"
        onClicked: header.backClicked()
    }
    Text {
        objectName: "headerTitle"
        anchors.left: back.right
        anchors.leftMargin: Math.round(16 * Global.dp)
        anchors.right: actionRow.left
        anchors.verticalCenter: parent.verticalCenter
        text: header.title
        elide: Text.ElideRight
        font.pixelSize: Math.round(24 * Global.dp)
        font.bold: true
        color: "black"
    }
    Row {
        id: actionRow
        anchors.right: parent.right
        anchors.rightMargin: Math.round(8 * Global.dp)
        anchors.verticalCenter: parent.verticalCenter
        height: parent.height
        spacing: Math.round(8 * Global.dp)
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Math.max(1, Math.round(2 * Global.dp))
        color: "black"
    }
}
