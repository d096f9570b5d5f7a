import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// A series or group of books in a home row: its covers stacked, each a little behind the other.
Item {
    id: group

    property string bookTitle: ""
    property string author: ""
    property string price: ""
    property string coverUrl: ""
    property var groupedUrls: []
    property bool isAudio: false
    property string description: ""
    property int tileWidth: BookstoreConstants.thumb_el_by_4_width
    readonly property var covers: groupedUrls.length > 0 ? groupedUrls.slice(0, 3) : (coverUrl !== "" ? [coverUrl] : [])
    readonly property int stackHeight: Math.round(tileWidth * 1.5)

    width: tileWidth
    height: stackHeight + text.height + BookstoreConstants.defaultImageClearence

    SeriesImage {
        width: group.tileWidth
        height: group.stackHeight
        covers: group.covers
        title: group.bookTitle
    }
    Column {
        id: text
        y: group.stackHeight + BookstoreConstants.defaultImageClearence
        width: group.width
        Text {
            objectName: "bookTitle"
            width: parent.width
            text: group.bookTitle
            elide: Text.ElideRight
            font.pixelSize: Math.round(16 * LPcontrols2.Global.dp)
            font.bold: true
            color: "black"
        }
        Text {
            objectName: "bookPrice"
            text: group.price
            font.pixelSize: Math.round(15 * LPcontrols2.Global.dp)
            color: "black"
        }
    }
}
