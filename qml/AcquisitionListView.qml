import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// A feed of books as a list, a page at a time; the next part of the feed is fetched when the
// last page is reached.
Item {
    id: view

    property bool grid: false
    readonly property var books: AcquisitionListModel
    readonly property bool loading: books !== null && (books.isListLoading || books.isReloading)
    // The model tells of new rows, not of its count or name: both are read again as it loads.
    readonly property int count: content.item ? content.item.count : 0
    // Books are shown and more are on their way: the end of the list says so.
    readonly property bool nextPageLoading: loading && count > 0
    property string listName: ""

    function positionToElement(position) {
        shown.positionViewAtIndex(position, ListView.Beginning)
    }
    // The first book on the page, for the way back.
    function currentPosition() {
        return Math.max(0, shown.indexAt(Math.round(shown.width / 6), shown.contentY + 1))
    }
    // What a cover says of a book besides its picture.
    function coverInfo(row) {
        if (row.in_stock === false)
            return qsTr("@OutOfStock")
        return row.old_price_with_code !== undefined && row.old_price_with_code !== "" ? qsTr("@Sale") : ""
    }

    Rectangle {
        anchors.fill: parent
        color: "white"
    }
    Connections {
        target: view.books
        function onIsListLoadingChanged() { view.listName = view.books.listName }
    }
    Component.onCompleted: listName = books.listName
    LPcontrols2.AppHeader {
        id: header
        width: parent.width
        height: Math.round(64 * LPcontrols2.Global.dp)
        title: view.listName
        backVisible: true
        onBackClicked: root.navigateBack()
        ViemManagmentControl {}
    }
    LPcontrols2.Breadcrumbs {
        id: crumbs
        objectName: "breadcrumbs"
        anchors.top: header.bottom
        x: BookstoreConstants.defaultBorderMargin
        width: parent.width - 2 * x
        height: BookstoreConstants.breadcrumbHeight
        model: NavigationHistoryModel
    }
    Loader {
        id: content
        anchors.top: crumbs.bottom
        anchors.bottom: pages.top
        x: BookstoreConstants.defaultBorderMargin
        width: parent.width - 2 * x
        sourceComponent: view.grid ? grid_books : list_books
    }
    property alias shown: content.item

    Component {
        id: list_books
        LPcontrols2.CachedListView {
            objectName: "bookList"
            model: view.books
            delegate: ListBookCard {
                width: ListView.view.width
                bookTitle: model.title
                author: model.author !== undefined ? model.author : ""
                price: model.price_with_code !== undefined ? model.price_with_code : ""
                oldPrice: model.old_price_with_code !== undefined ? model.old_price_with_code : ""
                coverUrl: model.cover_url !== undefined ? model.cover_url : ""
                rating: model.rating !== undefined ? model.rating : 0
                isAudio: model.book_type === "audio"
                groupedUrls: model.grouped_url_list !== undefined ? model.grouped_url_list : []
                info: view.coverInfo(model)
                onClicked: root.navigateDetailFromElementList(view.books, index)
            }
            footer: LoadingCover {
                width: ListView.view.width
                height: view.nextPageLoading ? BookstoreConstants.bookElementListHeight : 0
                running: view.nextPageLoading
            }
            onAtYEndChanged: if (atYEnd && count > 0 && !view.books.noNextPage) view.books.loadNext()
        }
    }
    Component {
        id: grid_books
        GridView {
            objectName: "bookGrid"
            interactive: false
            cellWidth: Math.floor(width / 3)
            // Whole rows fill a page, so that paging never cuts a row in two.
            readonly property int naturalCellHeight: Math.round(cellWidth * 1.5) + Math.round(68 * LPcontrols2.Global.dp)
            readonly property int rowsPerPage: Math.max(1, Math.round(height / naturalCellHeight))
            cellHeight: Math.max(1, Math.ceil(height / rowsPerPage))
            model: view.books
            clip: true
            delegate: BookCard {
                width: GridView.view.cellWidth - BookstoreConstants.defaultElementClearanceHor
                height: GridView.view.cellHeight
                bookTitle: model.title
                price: model.price_with_code !== undefined ? model.price_with_code : ""
                coverUrl: model.cover_url !== undefined ? model.cover_url : ""
                isAudio: model.book_type === "audio"
                groupedUrls: model.grouped_url_list !== undefined ? model.grouped_url_list : []
                info: view.coverInfo(model)
                onClicked: root.navigateDetailFromElementList(view.books, index)
            }
            footer: LoadingCover {
                width: GridView.view.cellWidth - BookstoreConstants.defaultElementClearanceHor
                height: view.nextPageLoading ? Math.round(width * 1.5) : 0
                running: view.nextPageLoading
            }
            function pageForward() {
                contentY = Math.min(contentY + height, Math.max(0, contentHeight - height))
                if (contentY + height >= contentHeight && !view.books.noNextPage) view.books.loadNext()
            }
            function pageBack() { contentY = Math.max(0, contentY - height) }
            MouseArea {
                anchors.fill: parent
                z: -1
                property real startY: 0
                onPressed: startY = mouse.y
                onReleased: {
                    if (mouse.y < startY - 40) parent.pageForward()
                    else if (mouse.y > startY + 40) parent.pageBack()
                }
            }
        }
    }
    LPcontrols2.ScrollIndicator {
        id: pages
        objectName: "listPages"
        target: content.item
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: BookstoreConstants.defaultBorderMargin
        width: Math.round(parent.width / 3)
        visible: !view.grid
    }
    LPcontrols2.BusyIndicator {
        objectName: "listBusy"
        anchors.centerIn: parent
        running: view.loading && view.count === 0
    }
    EmptyStore {
        anchors.fill: content
        visible: view.books !== null && !view.loading && view.count === 0
        failed: view.books !== null && view.books.loadFailed
        onRetry: view.books.reload()
    }
}
