import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// The place of the books still to come, at the end of a list while its next page loads.
Rectangle {
    id: placeholder

    property bool running: false

    color: "#f0f0f0"
    border.color: "#808080"
    border.width: 1

    LPcontrols2.BusyIndicator {
        objectName: "loadingCover"
        anchors.centerIn: parent
        running: placeholder.running
        label: qsTr("@LoadingMore")
    }
}
