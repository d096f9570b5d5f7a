import QtQuick 2.15
import com.lumenpress.controls 2.0

// Tells the owner something and closes when they confirm it, or by itself after timeout
// milliseconds when one is set.
DialogContainer {
    id: message

    property string text: ""
    property int timeout: 0

    onVisibleChanged: if (visible && timeout > 0) closer.restart()

    Timer {
        id: closer
        interval: message.timeout
        onTriggered: message.close()
    }
    Column {
        width: parent.width
        Text {
            objectName: "infoText"
            x: Math.round(20 * Global.dp)
            width: parent.width - 2 * x
            topPadding: Math.round(28 * Global.dp)
            bottomPadding: Math.round(8 * Global.dp)
            text: message.text
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            font.pixelSize: Math.round(20 * Global.dp)
            color: "black"
        }
        DialogFooter {
            onAccepted: message.close()
        }
    }
}
