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

    // The list's sort orders, below the header; the one in force is ticked.
    ContextMenu {
        id: sort_menu
        objectName: "sortMenu"
        parent: control.Window.contentItem
        x: parent ? parent.width - width - Math.round(16 * LPcontrols2.Global.dp) : 0
        y: Math.round(64 * LPcontrols2.Global.dp)
        model: SortModel
        textRole: "text_"
        activeRole: "is_active"
        choiceName: "sortChoice"
        onChosen: root.changeSortType(index)
    }
}
