import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// What a view shows instead of a blank page: the store could not be reached, or it has nothing
// to show here.
Item {
    id: empty

    property bool failed: false

    signal retry()

    Column {
        anchors.centerIn: parent
        width: parent.width - 2 * BookstoreConstants.defaultInfoScreenSideMargin
        spacing: Math.round(24 * LPcontrols2.Global.dp)

        Text {
            objectName: "emptyTitle"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: empty.failed ? qsTr("@StoreUnavailable") : qsTr("@NothingHereYet")
            font.pixelSize: Math.round(26 * LPcontrols2.Global.dp)
            font.bold: true
            color: "black"
        }
        Text {
            objectName: "emptyText"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: empty.failed ? qsTr("@StoreUnavailableAdvice") : qsTr("@NothingHereYetAdvice")
            font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
            color: "#333333"
        }
        LPcontrols2.RoundedCornerTextButton {
            objectName: "emptyRetry"
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.round(parent.width * 0.6)
            text: qsTr("@TryAgain")
            font.bold: true
            onClicked: empty.retry()
        }
    }
}
