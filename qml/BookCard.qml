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
    signal clicked()

    CoverWithInfo {
        id: cover
        width: parent.width
        height: card.isAudio ? width : Math.round(width * 1.5)
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
