import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0
import qml.bookstore 1.0

// An element of a home row that has no picture: its title in a dotted frame of a cover's size.
Item {
    id: pusher

    property string bookTitle: ""
    property string author: ""
    property string price: ""
    property string coverUrl: ""
    property var groupedUrls: []
    property bool isAudio: false
    property string description: ""
    property int tileWidth: BookstoreConstants.thumb_el_by_4_width

    width: tileWidth
    height: Math.round(tileWidth * 1.5)

    DottedRectangle {
        anchors.fill: parent
        color: "black"
        radius: Math.round(6 * LPcontrols2.Global.dp)
    }
    Text {
        objectName: "bookTitle"
        anchors.fill: parent
        anchors.margins: BookstoreConstants.defaultImageClearence
        text: pusher.bookTitle
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
        font.bold: true
        color: "black"
    }
}
