import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// The store's main genres at a glance, as large buttons; a tap shows a genre's books.
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
        title: qsTr("@PopularGenres")
        backVisible: true
        onBackClicked: root.navigateBack()
    }
    Flow {
        id: genres
        objectName: "popularGenres"
        readonly property int count: shown.count
        readonly property int cellWidth: Math.floor(width / 2)
        anchors.top: header.bottom
        anchors.topMargin: BookstoreConstants.defaultElementClearanceVer
        x: BookstoreConstants.defaultBorderMargin
        width: parent.width - 2 * x
        Repeater {
            id: shown
            model: CategoryTreeListModel
            // Genres opened in the tree stay there; only the top level shows here.
            delegate: Item {
                visible: model.level === 0
                width: genres.cellWidth
                height: Math.round(96 * LPcontrols2.Global.dp)
                LPcontrols2.RoundedCornerTextButton {
                    objectName: "popularGenre"
                    anchors.fill: parent
                    anchors.margins: Math.round(8 * LPcontrols2.Global.dp)
                    text: model.title
                    font.pixelSize: Math.round(22 * LPcontrols2.Global.dp)
                    onClicked: root.navigateAcquisitionList(model.url)
                }
            }
        }
    }
    LPcontrols2.BusyIndicator {
        anchors.centerIn: parent
        running: CategoryTreeListModel !== null && CategoryTreeListModel.isListLoading && genres.count === 0
    }
    EmptyStore {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: CategoryTreeListModel !== null && !CategoryTreeListModel.isListLoading && genres.count === 0
        onRetry: root.updateCategoryTree()
    }
}
