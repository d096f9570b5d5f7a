import QtQuick 2.15
import QtQuick.Window 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// Switches a list of books between rows and a grid; the choice is kept as the user's layout.
Row {
    id: control

    // The sort model tells when it has loaded, not when its count changes.
    property int sortOrders: 0

    spacing: Math.round(8 * LPcontrols2.Global.dp)
    anchors.verticalCenter: parent ? parent.verticalCenter : undefined

    LPcontrols2.RoundedCornerTextButton {
        objectName: "sortOrder"
        height: Math.round(44 * LPcontrols2.Global.dp)
        visible: control.sortOrders > 0
        text: qsTr("@SortBy")
        onClicked: sort_menu.visible = !sort_menu.visible
    }
    LPcontrols2.TextButton {
        objectName: "showAsList"
        height: Math.round(44 * LPcontrols2.Global.dp)
        text: "\u2630"
        bordered: false
        textColor: UserData.display_role === "list" ? "black" : "#9a9a9a"
        onClicked: root.switchToGrid(false)
    }
    LPcontrols2.TextButton {
        objectName: "showAsGrid"
        height: Math.round(44 * LPcontrols2.Global.dp)
        text: "\u25A6"
        bordered: false
        textColor: UserData.display_role !== "list" ? "black" : "#9a9a9a"
        onClicked: root.switchToGrid(true)
    }

    Connections {
        target: SortModel
        function onIsLoadedChanged() { control.sortOrders = SortModel.rowCount() }
    }
    Component.onCompleted: sortOrders = SortModel.rowCount()

    // The list's sort orders, below the header; the one in force is marked.
    Rectangle {
        id: sort_menu
        objectName: "sortMenu"
        parent: control.Window.contentItem
        visible: false
        z: 100
        x: parent ? parent.width - width - Math.round(16 * LPcontrols2.Global.dp) : 0
        y: Math.round(64 * LPcontrols2.Global.dp)
        width: Math.round(300 * LPcontrols2.Global.dp)
        height: orders.height + 2 * border.width
        border.color: "black"
        border.width: Math.round(3 * LPcontrols2.Global.dp)
        Column {
            id: orders
            x: sort_menu.border.width
            y: sort_menu.border.width
            width: sort_menu.width - 2 * x
            Repeater {
                model: SortModel
                delegate: Rectangle {
                    objectName: "sortChoice"
                    property string text: model.text_
                    width: orders.width
                    height: Math.round(56 * LPcontrols2.Global.dp)
                    color: sort_area.pressed ? "black" : "white"
                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        x: Math.round(16 * LPcontrols2.Global.dp)
                        text: (model.is_active ? "\u2713  " : "") + model.text_
                        font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
                        font.bold: model.is_active
                        color: sort_area.pressed ? "white" : "black"
                    }
                    MouseArea {
                        id: sort_area
                        anchors.fill: parent
                        onClicked: {
                            sort_menu.visible = false
                            root.changeSortType(index)
                        }
                    }
                }
            }
        }
    }
}
