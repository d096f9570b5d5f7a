import QtQuick 2.15
import com.lumenpress.controls 2.0

// The bar of a list in which the owner picks several rows: how many are picked, all or none, and
// the action that applies to them.
Rectangle {
    id: panel

    property int selectedCount: 0
    property int totalCount: 0
    property string actionText: ""

    signal selectAll()
    signal clearAll()
    signal action()

    implicitHeight: Math.round(72 * Global.dp)
    color: "white"
    border.color: "black"
    border.width: Math.max(1, Math.round(2 * Global.dp))

    Text {
        objectName: "selectionCount"
        anchors.left: parent.left
        anchors.leftMargin: Math.round(16 * Global.dp)
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("@Selected") + ": " + panel.selectedCount + " / " + panel.totalCount
        font.pixelSize: Math.round(18 * Global.dp)
        color: "black"
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Math.round(12 * Global.dp)
        anchors.verticalCenter: parent.verticalCenter
        spacing: Math.round(8 * Global.dp)
        TextButton {
            objectName: "selectAll"
            text: panel.selectedCount < panel.totalCount ? qsTr("@SelectAll") : qsTr("@ClearAll")
            enabled: panel.totalCount > 0
            onClicked: panel.selectedCount < panel.totalCount ? panel.selectAll() : panel.clearAll()
        }
        RoundedCornerTextButton {
            objectName: "selectionAction"
            visible: panel.actionText !== ""
            text: panel.actionText
            font.bold: true
            enabled: panel.selectedCount > 0
            onClicked: panel.action()
        }
    }
}
