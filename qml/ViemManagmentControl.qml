import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// Switches a list of books between rows and a grid; the choice is kept as the user's layout.
Row {
    id: control

    spacing: Math.round(8 * LPcontrols2.Global.dp)
    anchors.verticalCenter: parent ? parent.verticalCenter : undefined

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
}
