import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The common frame of a login step: a title, a line of explanation, and the step's own fields
// and buttons in one column in the middle of the panel.
Item {
    id: frame

    property alias title: title_text.text
    property alias description: description_text.text
    property bool busy: false
    default property alias content: fields.data

    anchors.fill: parent

    Rectangle {
        anchors.fill: parent
        color: "white"
    }
    Column {
        id: column
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: Math.round(96 * LPcontrols2.Global.dp)
        width: Math.min(parent.width - Math.round(64 * LPcontrols2.Global.dp), Math.round(600 * LPcontrols2.Global.dp))
        spacing: Math.round(24 * LPcontrols2.Global.dp)

        Text {
            id: title_text
            objectName: "loginStepTitle"
            width: parent.width
            font.pixelSize: Math.round(34 * LPcontrols2.Global.dp)
            font.bold: true
            wrapMode: Text.Wrap
            color: "black"
        }
        Text {
            id: description_text
            objectName: "loginStepDescription"
            width: parent.width
            visible: text.length > 0
            font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
            wrapMode: Text.Wrap
            color: "black"
        }
        Column {
            id: fields
            width: parent.width
            spacing: Math.round(16 * LPcontrols2.Global.dp)
            enabled: !frame.busy
        }
    }
    LPcontrols2.BusyIndicator {
        objectName: "loginBusy"
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: column.bottom
        anchors.topMargin: Math.round(32 * LPcontrols2.Global.dp)
        running: frame.busy
    }
}
