import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// Search: the field with the store's suggestions while typing, and the recent searches while
// it is empty.
Item {
    id: view

    Rectangle {
        anchors.fill: parent
        color: "white"
    }
    SearchHeader {
        id: header
        width: parent.width
        onBack: root.navigateBack()
        onSearch: root.openSearchResults(text)
        Component.onCompleted: takeFocus()
    }
    SearchAutocomplete {
        anchors.top: header.bottom
        x: BookstoreConstants.defaultBorderMargin
        width: parent.width - 2 * x
        visible: header.text !== ""
        onTermChosen: root.openSearchResults(text)
        onBookChosen: root.navigateDetailByEntryUrl(url)
    }
    Column {
        anchors.top: header.bottom
        anchors.topMargin: BookstoreConstants.defaultElementClearanceVer
        x: BookstoreConstants.defaultBorderMargin
        width: parent.width - 2 * x
        visible: header.text === ""
        LPcontrols2.SectionHeader {
            width: parent.width
            text: qsTr("@RecentSearches")
            visible: recent.count > 0
        }
        Repeater {
            id: recent
            model: LastSearch
            delegate: Rectangle {
                objectName: "recentSearch"
                property string text: model.name
                width: parent.width
                height: Math.round(56 * LPcontrols2.Global.dp)
                color: recent_area.pressed ? "#e0e0e0" : "white"
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    x: Math.round(8 * LPcontrols2.Global.dp)
                    text: "\u21BA  " + model.name
                    font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
                    color: "black"
                }
                MouseArea {
                    id: recent_area
                    anchors.fill: parent
                    onClicked: root.openSearchResults(model.name)
                }
            }
        }
    }
    Component.onCompleted: header.forceActiveFocus()
}
