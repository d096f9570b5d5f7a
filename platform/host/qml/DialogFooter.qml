import QtQuick 2.15
import com.lumenpress.controls 2.0

// The answers of a dialog: one or two buttons side by side. An empty text leaves its button out.
Item {
    id: footer

    property string acceptText: qsTr("@OK")
    property string rejectText: ""

    signal accepted()
    signal rejected()

    width: parent ? parent.width : implicitWidth
    implicitHeight: Math.round(88 * Global.dp)

    Row {
        anchors.centerIn: parent
        spacing: Math.round(16 * Global.dp)
        readonly property int buttonWidth: (footer.width - Math.round(56 * Global.dp)) / (footer.rejectText !== "" ? 2 : 1)

        RoundedCornerTextButton {
            objectName: "dialogReject"
            visible: footer.rejectText !== ""
            width: Math.min(parent.buttonWidth, Math.round(220 * Global.dp))
            text: footer.rejectText
            onClicked: footer.rejected()
        }
        RoundedCornerTextButton {
            objectName: "dialogAccept"
            visible: footer.acceptText !== ""
            width: Math.min(parent.buttonWidth, Math.round(220 * Global.dp))
            text: footer.acceptText
            font.bold: true
            onClicked: footer.accepted()
        }
    }
}
