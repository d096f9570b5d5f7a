import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// The home page: the store's header above the rows of its home feed.
Item {
    id: home_page

    LPcontrols2.AppHeader {
        id: header
        objectName: "homeHeader"
        anchors.top: parent.top
        width: parent.width
        height: Math.round(64 * LPcontrols2.Global.dp)
        title: qsTr("@$UniversalStore")

        LPcontrols2.RoundedCornerTextButton {
            objectName: "openCategories"
            anchors.verticalCenter: parent.verticalCenter
            height: Math.round(44 * LPcontrols2.Global.dp)
            text: qsTr("@Categories")
            onClicked: root.openCategoryTree()
        }
        LPcontrols2.RoundedCornerTextButton {
            objectName: "openSearch"
            anchors.verticalCenter: parent.verticalCenter
            height: Math.round(44 * LPcontrols2.Global.dp)
            text: qsTr("@Search")
            onClicked: root.openSearchView()
        }
        UserLoginIcon {
            objectName: "userLoginIcon"
            height: parent.height
            width: height
        }
    }

    ElementsList {
        id: rows
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        listModel: RootListModel
    }
}
