import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// A collection in a home row: four of its covers in a square, its name below.
Item {
    id: category

    property string bookTitle: ""
    property string author: ""
    property string price: ""
    property string coverUrl: ""
    property var groupedUrls: []
    property bool isAudio: false
    property string description: ""
    property int tileWidth: BookstoreConstants.thumb_el_by_4_width
    readonly property int cell: Math.floor((tileWidth - BookstoreConstants.coverSelectMargins) / 2)

    width: tileWidth
    height: mosaic.height + text.height + BookstoreConstants.defaultImageClearence

    Grid {
        id: mosaic
        columns: 2
        spacing: BookstoreConstants.coverSelectMargins
        Repeater {
            model: Math.min(4, category.groupedUrls.length)
            Cover {
                width: category.cell
                height: Math.round(category.cell * 1.5)
                url: category.groupedUrls[index]
            }
        }
    }
    Column {
        id: text
        y: mosaic.height + BookstoreConstants.defaultImageClearence
        width: category.width
        Text {
            objectName: "bookTitle"
            width: parent.width
            text: category.bookTitle
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            font.pixelSize: Math.round(16 * LPcontrols2.Global.dp)
            font.bold: true
            color: "black"
        }
        Text {
            objectName: "bookPrice"
            text: category.price
            font.pixelSize: Math.round(15 * LPcontrols2.Global.dp)
            color: "black"
        }
    }
}
