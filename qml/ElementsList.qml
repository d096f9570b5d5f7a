import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// The rows of the home page, a page at a time. While the feed loads it says so; when it fails
// or is empty it says that, with a way to try again.
Item {
    id: elements

    property var listModel: null
    readonly property bool loading: listModel !== null && (listModel.isListLoading || listModel.isReloading)

    function positionToElement(position) {
        rows.positionViewAtIndex(position, ListView.Beginning)
    }
    // The first row on the page, for the way back.
    function currentPosition() {
        return Math.max(0, rows.indexAt(rows.width / 2, rows.contentY + 1))
    }

    LPcontrols2.CachedListView {
        id: rows
        objectName: "homeRows"
        anchors.fill: parent
        anchors.leftMargin: BookstoreConstants.defaultBorderMargin
        anchors.rightMargin: BookstoreConstants.defaultBorderMargin
        anchors.bottomMargin: pages.height
        spacing: BookstoreConstants.elementListSpacing
        model: elements.listModel

        delegate: HomeDashRow {
            width: rows.width
            rowTitle: title
            rowType: elem_type
            books: element_model
            onTitleClicked: root.navigateAcquisitionList(model.url)
            onBookClicked: root.navigateDetailFromElementList(element_model, index)
        }

        footer: Item {
            width: rows.width
            height: nextPage.visible ? nextPage.height + 2 * BookstoreConstants.defaultElementClearanceVer : 0
            LPcontrols2.BusyIndicator {
                id: nextPage
                objectName: "nextPageBusy"
                anchors.centerIn: parent
                running: elements.loading && rows.count > 0
                label: qsTr("@LoadingMore")
            }
        }

        onAtYEndChanged: if (atYEnd && count > 0 && elements.listModel && !elements.listModel.noNextPage)
                             elements.listModel.loadNext()
    }

    LPcontrols2.ScrollIndicator {
        id: pages
        objectName: "homePages"
        target: rows
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: BookstoreConstants.defaultBorderMargin
        width: Math.round(parent.width / 3)
    }

    LPcontrols2.BusyIndicator {
        objectName: "homeBusy"
        anchors.centerIn: parent
        running: elements.loading && rows.count === 0
    }

    EmptyStore {
        objectName: "homeEmpty"
        anchors.fill: parent
        visible: elements.listModel !== null && !elements.loading && rows.count === 0
        failed: elements.listModel !== null && elements.listModel.loadFailed
        onRetry: elements.listModel.reload()
    }
}
