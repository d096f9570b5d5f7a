import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// The home page: the store's header and the ways into the catalogue above the rows of its
// home feed.
Item {
    id: home_page

    function positionToElement(position) {
        rows.positionToElement(position)
    }
    function currentPosition() {
        return rows.currentPosition()
    }

    LPcontrols2.AppHeader {
        id: header
        objectName: "homeHeader"
        anchors.top: parent.top
        width: parent.width
        height: Math.round(64 * LPcontrols2.Global.dp)
        title: qsTr("@$UniversalStore")

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

    MmRoundButtonsRow {
        id: ways_in
        anchors.top: header.bottom
        width: parent.width
    }
    ElementsList {
        id: rows
        anchors.top: ways_in.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        listModel: RootListModel
    }
}
