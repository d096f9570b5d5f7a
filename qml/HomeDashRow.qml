import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// One row of the home page: its title, then its first books side by side. The book of the week
// (row type 0) is shown large, with its description.
Item {
    id: row

    property string rowTitle: ""
    property int rowType: 1
    property var books: null
    signal titleClicked()
    signal bookClicked(int index)

    implicitHeight: column.height

    Column {
        id: column
        width: parent.width
        spacing: BookstoreConstants.defaultElementClearanceVer

        LPcontrols2.SectionHeader {
            objectName: "rowTitle"
            width: parent.width
            text: row.rowTitle
            MouseArea {
                anchors.fill: parent
                onClicked: row.titleClicked()
            }
        }
        Row {
            id: tiles
            spacing: BookstoreConstants.defaultElementClearanceHor
            height: Math.max(childrenRect.height, BookstoreConstants.bookElementRowHeight / 3)

            Repeater {
                model: row.books
                delegate: Loader {
                    visible: row.rowType !== 0 || index === 0
                    Component.onCompleted: setSource(tileFile(), {
                        "bookTitle": title,
                        "author": author !== undefined ? author : "",
                        "price": price_with_code !== undefined ? price_with_code : "",
                        "coverUrl": cover_url !== undefined ? cover_url : "",
                        "groupedUrls": grouped_url_list !== undefined ? grouped_url_list : [],
                        "isAudio": book_type === "audio",
                        "description": row.rowType === 0 && description !== undefined ? description : "",
                        "tileWidth": row.rowType === 0 ? tiles.parent.width : BookstoreConstants.thumb_el_by_4_width
                    })

                    MouseArea {
                        objectName: "rowBook"
                        anchors.fill: parent
                        onClicked: row.bookClicked(index)
                    }

                    function tileFile() {
                        if (grouped) return row.rowType === 4 ? "ListGroupedCategory.qml" : "ListGroupedBook.qml"
                        if (cover_url === undefined || cover_url === "") return "TextPusher.qml"
                        return "ListBookElement.qml"
                    }
                }
            }
        }
        LPcontrols2.BusyIndicator {
            objectName: "rowBusy"
            anchors.horizontalCenter: parent.horizontalCenter
            running: row.books !== null && row.books !== undefined && row.books.isListLoading
            label: ""
            width: Math.round(40 * LPcontrols2.Global.dp)
            height: width
        }
    }
}
