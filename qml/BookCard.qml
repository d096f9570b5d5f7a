import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// A book as a cell of a grid: cover, title and price; a tap opens its page.
Item {
    id: card

    property string bookTitle: ""
    property string price: ""
    property string coverUrl: ""
    property bool isAudio: false
    property var groupedUrls: []
    property string info: ""
    // Two lines of title and the price under the cover.
    readonly property int textHeight: Math.round(68 * LPcontrols2.Global.dp)
    signal clicked()

    CoverWithInfo {
        id: cover
        // A short cell narrows the cover rather than cut off the title or the price.
        height: Math.max(0, Math.min(card.isAudio ? card.width : Math.round(card.width * 1.5), card.height - card.textHeight))
        width: card.isAudio ? height : Math.min(card.width, Math.round(height / 1.5))
        url: card.coverUrl
        title: card.bookTitle
        groupedUrls: card.groupedUrls
        info: card.info
    }
    Column {
        anchors.top: cover.bottom
        anchors.topMargin: BookstoreConstants.defaultImageClearence
        width: parent.width
        Text {
            objectName: "gridBookTitle"
            width: parent.width
            text: card.bookTitle
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            font.pixelSize: Math.round(16 * LPcontrols2.Global.dp)
            font.bold: true
            color: "black"
        }
        Text {
            objectName: "gridBookPrice"
            width: parent.width
            text: card.price
            font.pixelSize: Math.round(16 * LPcontrols2.Global.dp)
            color: "black"
        }
    }
    MouseArea {
        anchors.fill: parent
        onClicked: card.clicked()
    }
}
