import QtQuick 2.15
import com.lumenpress.controls 2.0

// One document the owner may agree to: a box to tick, and the document's name as a link to read it.
Item {
    id: element

    property bool checked: false
    property string text: ""
    property bool required: false
    property bool isLink: true

    signal toggled(bool checked)
    signal openDocument()

    implicitHeight: Math.max(Math.round(56 * Global.dp), label.implicitHeight + Math.round(16 * Global.dp))

    Rectangle {
        id: box
        objectName: "agreeBox"
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        width: Math.round(32 * Global.dp)
        height: width
        color: "white"
        border.color: "black"
        border.width: Math.max(2, Math.round(2 * Global.dp))
        Text {
            anchors.centerIn: parent
            visible: element.checked
            text: "✓"
            font.pixelSize: parent.height * 0.8
            font.bold: true
            color: "black"
        }
        MouseArea {
            anchors.fill: parent
            anchors.margins: -Math.round(12 * Global.dp)
            onClicked: {
                element.checked = !element.checked
                element.toggled(element.checked)
            }
        }
    }
    Text {
        id: label
        objectName: "agreeText"
        anchors.left: box.right
        anchors.leftMargin: Math.round(16 * Global.dp)
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: element.text + (element.required ? " *" : "")
        wrapMode: Text.Wrap
        font.pixelSize: Math.round(18 * Global.dp)
        font.underline: element.isLink
        color: "black"
        MouseArea {
            anchors.fill: parent
            enabled: element.isLink
            onClicked: element.openDocument()
        }
    }
}
