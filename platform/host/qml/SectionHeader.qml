import QtQuick 2.15
import com.lumenpress.controls 2.0

// The title of a group of rows, with a line below and an optional link on the right ("all").
Item {
    id: header

    property alias text: title.text
    property string linkText: ""

    signal linkClicked()

    implicitHeight: Math.round(52 * Global.dp)

    Text {
        id: title
        objectName: "sectionTitle"
        anchors.left: parent.left
        anchors.right: link.left
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideRight
        font.pixelSize: Math.round(22 * Global.dp)
        font.bold: true
        color: "black"
    }
    TextButton {
        id: link
        objectName: "sectionLink"
        visible: header.linkText !== ""
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: visible ? implicitWidth : 0
        height: parent.height
        bordered: false
        font.underline: true
        font.pixelSize: Math.round(18 * Global.dp)
        text: header.linkText + " ›"
        onClicked: header.linkClicked()
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Math.max(1, Math.round(2 * Global.dp))
        color: "black"
    }
}
