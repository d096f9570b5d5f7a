import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// The book itself on its page: cover, title, author, rating, price, description and details.
Item {
    id: card

    property string bookTitle: ""
    property string author: ""
    property string coverUrl: ""
    property real rating: 0
    property string description: ""
    property bool isAudio: false
    property bool inStock: true
    property string format: ""
    property var details: null

    implicitHeight: column.height + BookstoreConstants.defaultElementClearanceVer

    Column {
        id: column
        width: parent.width
        spacing: BookstoreConstants.defaultElementClearanceVer

        Row {
            width: parent.width
            spacing: BookstoreConstants.defaultElementClearanceHor
            Cover {
                id: cover
                width: Math.round(parent.width * 0.38)
                height: card.isAudio ? width : Math.round(width * 1.5)
                url: card.coverUrl
                title: card.bookTitle
            }
            Column {
                width: parent.width - cover.width - parent.spacing
                spacing: Math.round(8 * LPcontrols2.Global.dp)
                Text {
                    objectName: "detailTitle"
                    width: parent.width
                    text: card.bookTitle
                    wrapMode: Text.Wrap
                    font.pixelSize: Math.round(28 * LPcontrols2.Global.dp)
                    font.bold: true
                    color: "black"
                }
                Text {
                    objectName: "detailAuthor"
                    width: parent.width
                    text: card.author
                    visible: text !== ""
                    wrapMode: Text.Wrap
                    font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
                    color: "#333333"
                }
                StarRating {
                    rating: card.rating
                    size: Math.round(22 * LPcontrols2.Global.dp)
                }
                Text {
                    text: (card.isAudio ? qsTr("@Audio_books") : qsTr("@EBook")) + (card.format !== "" ? " \u00b7 " + card.format : "")
                    font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
                    color: "#333333"
                }
                Rectangle {
                    objectName: "detailPrice"
                    property string text: price_text.text
                    width: parent.width
                    height: Math.round(56 * LPcontrols2.Global.dp)
                    radius: Math.round(6 * LPcontrols2.Global.dp)
                    border.color: "black"
                    border.width: Math.round(2 * LPcontrols2.Global.dp)
                    Text {
                        id: price_text
                        anchors.centerIn: parent
                        textFormat: Text.RichText
                        text: card.inStock ? DetailModel.GenerateBuyStr() : qsTr("@ThisProductIsOutOfStock")
                        font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
                        color: "black"
                    }
                }
            }
        }
        RoundButtonsRow {
            objectName: "bookGenres"
            width: parent.width
            caption: qsTr("@Genres")
            model: GenreModel
            onChosen: root.navigateAcquisitionList(GenreModel.getUrl(index))
        }
        Text {
            objectName: "detailDescription"
            width: parent.width
            text: card.description
            wrapMode: Text.Wrap
            font.pixelSize: Math.round(19 * LPcontrols2.Global.dp)
            color: "black"
        }
        Column {
            width: parent.width
            Repeater {
                model: card.details
                delegate: Row {
                    visible: model.value !== ""
                    height: visible ? implicitHeight : 0
                    spacing: BookstoreConstants.defaultElementClearanceHor
                    Text {
                        width: Math.round(column.width * 0.35)
                        text: model.name
                        font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
                        color: "#515151"
                    }
                    Text {
                        objectName: "detailValue"
                        width: Math.round(column.width * 0.6)
                        text: model.value
                        wrapMode: Text.Wrap
                        font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
                        color: "black"
                    }
                }
            }
        }
        RoundButtonsRow {
            objectName: "bookLists"
            width: parent.width
            model: FeedLinksModel
            onChosen: root.navigateAcquisitionList(FeedLinksModel.getUrl(index))
        }
    }
}
