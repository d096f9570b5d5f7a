import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// The store's genres as a tree: a genre with genres below it opens and closes in place; a tap
// on its name shows its books.
Rectangle {
    id: view

    color: "white"

    LPcontrols2.AppHeader {
        id: header
        width: parent.width
        height: Math.round(64 * LPcontrols2.Global.dp)
        title: CategoryTreeListModel ? CategoryTreeListModel.listName : ""
        backVisible: true
        onBackClicked: root.navigateBack()
    }
    LPcontrols2.CachedListView {
        id: tree
        objectName: "categoryTree"
        anchors.top: header.bottom
        anchors.bottom: pages.top
        x: BookstoreConstants.defaultBorderMargin
        width: parent.width - 2 * x
        model: CategoryTreeListModel
        delegate: Rectangle {
            objectName: "category"
            property string text: model.title
            width: tree.width
            height: Math.round(60 * LPcontrols2.Global.dp)
            color: name_area.pressed ? "#e0e0e0" : "white"
            Text {
                anchors.left: parent.left
                anchors.leftMargin: Math.round((8 + 32 * model.level) * LPcontrols2.Global.dp)
                anchors.right: toggle.left
                anchors.verticalCenter: parent.verticalCenter
                text: model.title
                elide: Text.ElideRight
                font.pixelSize: Math.round((model.level === 0 ? 24 : 21) * LPcontrols2.Global.dp)
                font.bold: model.level === 0
                color: "black"
            }
            MouseArea {
                id: name_area
                anchors.fill: parent
                anchors.rightMargin: toggle.width
                onClicked: root.navigateAcquisitionList(model.url)
            }
            LPcontrols2.TextButton {
                id: toggle
                objectName: "categoryToggle"
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: height
                height: Math.round(52 * LPcontrols2.Global.dp)
                visible: model.has_children
                bordered: false
                text: model.is_opened ? "\u2212" : "+"
                font.pixelSize: Math.round(28 * LPcontrols2.Global.dp)
                onClicked: model.is_opened ? CategoryTreeListModel.closeSublist(index) : CategoryTreeListModel.openSublist(index)
            }
            LPcontrols2.DottedSeparator {
                anchors.bottom: parent.bottom
                width: parent.width
            }
        }
    }
    LPcontrols2.ScrollIndicator {
        id: pages
        target: tree
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: BookstoreConstants.defaultBorderMargin
        width: Math.round(parent.width / 3)
    }
    LPcontrols2.BusyIndicator {
        anchors.centerIn: parent
        running: CategoryTreeListModel !== null && CategoryTreeListModel.isListLoading && tree.count === 0
    }
}
