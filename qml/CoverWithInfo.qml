import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// A book's cover as lists show it: a series or collection as its stacked covers, and a word on
// a black strip at the foot when the book is on sale or cannot be bought.
Item {
    id: frame

    property string url: ""
    property string title: ""
    property var groupedUrls: []
    property string info: ""

    SeriesImage {
        anchors.fill: parent
        visible: frame.groupedUrls.length > 1
        covers: visible ? frame.groupedUrls.slice(0, 3) : []
        title: frame.title
    }
    Cover {
        anchors.fill: parent
        visible: frame.groupedUrls.length <= 1
        url: visible ? frame.url : ""
        title: frame.title
    }
    Rectangle {
        objectName: "coverInfo"
        visible: frame.info !== ""
        anchors.bottom: parent.bottom
        width: parent.width
        height: Math.round(28 * LPcontrols2.Global.dp)
        color: "black"
        Text {
            anchors.centerIn: parent
            width: parent.width - Math.round(8 * LPcontrols2.Global.dp)
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideRight
            text: frame.info
            font.pixelSize: Math.round(15 * LPcontrols2.Global.dp)
            font.bold: true
            color: "white"
        }
    }
}
