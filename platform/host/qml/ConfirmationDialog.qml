import QtQuick 2.15
import com.lumenpress.controls 2.0

// Asks the owner a question and reports the answer; either answer closes it.
DialogContainer {
    id: dialog

    property string title: ""
    property string text: ""
    property string acceptText: qsTr("@Yes")
    property string rejectText: qsTr("@Cancel")

    signal accepted()
    signal rejected()

    Column {
        width: parent.width
        DialogHeader {
            text: dialog.title
            visible: dialog.title !== ""
            onCloseClicked: { dialog.close(); dialog.rejected() }
        }
        Text {
            objectName: "dialogText"
            x: Math.round(20 * Global.dp)
            width: parent.width - 2 * x
            topPadding: Math.round(20 * Global.dp)
            bottomPadding: Math.round(8 * Global.dp)
            text: dialog.text
            wrapMode: Text.Wrap
            font.pixelSize: Math.round(20 * Global.dp)
            color: "black"
        }
        DialogFooter {
            acceptText: dialog.acceptText
            rejectText: dialog.rejectText
            onAccepted: { dialog.close(); dialog.accepted() }
            onRejected: { dialog.close(); dialog.rejected() }
        }
    }
}
