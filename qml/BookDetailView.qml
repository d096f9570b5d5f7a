import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// A book's page: the book, then the lists related to it, a page at a time.
Item {
    id: view

    Rectangle {
        anchors.fill: parent
        color: "white"
    }
    LPcontrols2.AppHeader {
        id: header
        width: parent.width
        height: Math.round(64 * LPcontrols2.Global.dp)
        title: DetailModel.getTitle()
        backVisible: true
        onBackClicked: root.navigateBack()
        Connections {
            target: DetailModel
            function onDetailModelChanged() { header.title = DetailModel.getTitle() }
        }
    }
    LPcontrols2.Breadcrumbs {
        id: crumbs
        anchors.top: header.bottom
        x: BookstoreConstants.defaultBorderMargin
        width: parent.width - 2 * x
        height: BookstoreConstants.breadcrumbHeight
        model: NavigationHistoryModel
    }
    LPcontrols2.CachedListView {
        id: rows
        objectName: "detailRows"
        anchors.top: crumbs.bottom
        anchors.bottom: pages.top
        x: BookstoreConstants.defaultBorderMargin
        width: parent.width - 2 * x
        spacing: BookstoreConstants.elementListSpacing
        model: DetailModel
        delegate: Loader {
            width: rows.width
            sourceComponent: model.elem_type === 0 ? book : related
            property var row: model
            property int rowIndex: index
        }
    }
    Component {
        id: book
        DetailBookCard {
            bookTitle: row.title
            author: row.author !== undefined ? row.author : ""
            coverUrl: row.cover_url !== undefined ? row.cover_url : ""
            rating: row.bookRating !== undefined ? row.bookRating : 0
            description: row.description !== undefined ? row.description : ""
            isAudio: row.book_type === "AudioBook"
            inStock: row.in_stock !== false
            format: row.book_format !== undefined ? row.book_format : ""
            details: row.details_submodel
        }
    }
    Component {
        id: related
        Column {
            spacing: BookstoreConstants.defaultElementClearanceVer
            LPcontrols2.SectionHeader {
                objectName: "relatedTitle"
                width: parent.width
                text: row.title
            }
            Row {
                spacing: BookstoreConstants.defaultElementClearanceHor
                Repeater {
                    model: row.element_model
                    delegate: BookCard {
                        width: BookstoreConstants.thumb_el_by_4_width
                        height: Math.round(width * 1.5) + textHeight
                        bookTitle: model.title
                        price: model.price_with_code !== undefined ? model.price_with_code : ""
                        coverUrl: model.cover_url !== undefined ? model.cover_url : ""
                        isAudio: model.book_type === "audio"
                        onClicked: root.navigateDetailFromElementList(row.element_model, index)
                    }
                }
            }
        }
    }
    LPcontrols2.ScrollIndicator {
        id: pages
        target: rows
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: BookstoreConstants.defaultBorderMargin
        width: Math.round(parent.width / 3)
    }
    LPcontrols2.BusyIndicator {
        objectName: "detailBusy"
        anchors.centerIn: parent
        running: DetailModel.ListLoading || rows.count === 0
    }
}
