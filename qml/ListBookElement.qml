import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// A book of a home row: its cover, title, author and price. With a description it is laid out
// wide, the text beside the cover.
Item {
    id: book

    property string bookTitle: ""
    property string author: ""
    property string price: ""
    property string coverUrl: ""
    property var groupedUrls: []
    property bool isAudio: false
    property string description: ""
    property int tileWidth: BookstoreConstants.thumb_el_by_4_width
    readonly property bool wide: description !== ""
    readonly property int coverWidth: wide ? Math.round(BookstoreConstants.rowThumbWidth * 1.3) : tileWidth
    readonly property int coverHeight: isAudio ? coverWidth : Math.round(coverWidth * 1.5)

    width: tileWidth
    height: wide ? Math.max(coverHeight, text.height) : coverHeight + text.height + BookstoreConstants.defaultImageClearence

    Cover {
        id: cover
        width: book.coverWidth
        height: book.coverHeight
        url: book.coverUrl
        title: book.bookTitle
    }
    Column {
        id: text
        x: book.wide ? cover.width + BookstoreConstants.defaultElementClearanceHor : 0
        y: book.wide ? 0 : cover.height + BookstoreConstants.defaultImageClearence
        width: book.width - x
        spacing: Math.round(2 * LPcontrols2.Global.dp)

        Text {
            objectName: "bookTitle"
            width: parent.width
            text: book.bookTitle
            elide: Text.ElideRight
            maximumLineCount: 2
            wrapMode: Text.Wrap
            font.pixelSize: Math.round((book.wide ? 22 : 16) * LPcontrols2.Global.dp)
            font.bold: true
            color: "black"
        }
        Text {
            width: parent.width
            visible: book.author !== ""
            text: book.author
            elide: Text.ElideRight
            font.pixelSize: Math.round((book.wide ? 18 : 14) * LPcontrols2.Global.dp)
            color: "#333333"
        }
        Text {
            width: parent.width
            visible: book.wide
            topPadding: BookstoreConstants.defaultImageClearence
            text: book.description
            wrapMode: Text.Wrap
            maximumLineCount: 7
            elide: Text.ElideRight
            font.pixelSize: Math.round(16 * LPcontrols2.Global.dp)
            color: "black"
        }
        Text {
            objectName: "bookPrice"
            topPadding: book.wide ? BookstoreConstants.defaultImageClearence : 0
            text: book.price
            font.pixelSize: Math.round((book.wide ? 20 : 15) * LPcontrols2.Global.dp)
            font.bold: book.wide
            color: "black"
        }
    }
}
