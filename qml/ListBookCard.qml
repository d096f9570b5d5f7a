import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// A book as a row of a list: cover, title, author, rating and price; a tap opens its page.
Rectangle {
    id: card

    property string bookTitle: ""
    property string author: ""
    property string price: ""
    property string oldPrice: ""
    property string coverUrl: ""
    property real rating: 0
    property bool isAudio: false
    property var groupedUrls: []
    property string info: ""
    signal clicked()

    height: BookstoreConstants.bookElementListHeight
    color: area.pressed ? "#e0e0e0" : "white"

    CoverWithInfo {
        id: cover
        anchors.verticalCenter: parent.verticalCenter
        height: parent.height - 2 * BookstoreConstants.defaultElementClearanceVer
        width: card.isAudio ? height : Math.round(height / 1.5)
        url: card.coverUrl
        title: card.bookTitle
        groupedUrls: card.groupedUrls
        info: card.info
    }
    Column {
        anchors.left: cover.right
        anchors.leftMargin: BookstoreConstants.defaultElementClearanceHor
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Math.round(4 * LPcontrols2.Global.dp)
        Text {
            objectName: "listBookTitle"
            width: parent.width
            text: card.bookTitle
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            font.pixelSize: Math.round(22 * LPcontrols2.Global.dp)
            font.bold: true
            color: "black"
        }
        Text {
            width: parent.width
            text: card.author
            visible: text !== ""
            elide: Text.ElideRight
            font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
            color: "#333333"
        }
        StarRating {
            rating: card.rating
        }
        Row {
            spacing: Math.round(12 * LPcontrols2.Global.dp)
            Text {
                text: card.oldPrice
                visible: text !== ""
                font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
                font.strikeout: true
                color: "#7f7f7f"
            }
            Text {
                text: card.price
                font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
                font.bold: true
                color: "black"
            }
        }
    }
    LPcontrols2.DottedSeparator {
        anchors.bottom: parent.bottom
        width: parent.width
    }
    MouseArea {
        id: area
        anchors.fill: parent
        onClicked: card.clicked()
    }
}
