import QtQuick 2.15
import com.lumenpress.controls 2.0

// Where the owner is in a long view: "page / pages" and a bar with the shown part in black.
Item {
    id: indicator

    property Flickable target: null
    readonly property int pages: target && target.height > 0 ? Math.max(1, Math.ceil(target.contentHeight / target.height)) : 1
    readonly property int page: target && target.height > 0
                                ? Math.min(pages, Math.floor((target.contentY - target.originY + target.height / 2) / target.height) + 1) : 1

    implicitWidth: Math.round(120 * Global.dp)
    implicitHeight: Math.round(32 * Global.dp)
    visible: pages > 1

    Text {
        id: counter
        objectName: "pageCounter"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: indicator.page + " / " + indicator.pages
        font.pixelSize: Math.round(16 * Global.dp)
        color: "black"
    }
    Rectangle {
        id: track
        anchors.left: parent.left
        anchors.right: counter.left
        anchors.rightMargin: Math.round(8 * Global.dp)
        anchors.verticalCenter: parent.verticalCenter
        height: Math.round(6 * Global.dp)
        color: "white"
        border.color: "black"
        border.width: 1
        Rectangle {
            objectName: "pageBar"
            x: (indicator.page - 1) * width
            width: track.width / indicator.pages
            height: parent.height
            color: "black"
        }
    }
}
