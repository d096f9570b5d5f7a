import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// A framed column of choices that opens over a view; the choice in force is ticked.
Rectangle {
    id: menu

    property var model: null
    property string textRole: "title"
    property string activeRole: ""
    // Names the choices, so that each menu's can be found by name.
    property string choiceName: "menuChoice"

    signal chosen(int index)

    visible: false
    z: 100
    width: Math.round(300 * LPcontrols2.Global.dp)
    height: choices.height + 2 * border.width
    border.color: "black"
    border.width: Math.round(3 * LPcontrols2.Global.dp)

    Column {
        id: choices
        x: menu.border.width
        y: menu.border.width
        width: menu.width - 2 * x
        Repeater {
            model: menu.model
            delegate: Rectangle {
                objectName: menu.choiceName
                readonly property bool active: menu.activeRole !== "" && model[menu.activeRole] === true
                property string text: model[menu.textRole]
                width: choices.width
                height: Math.round(56 * LPcontrols2.Global.dp)
                color: area.pressed ? "black" : "white"
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    x: Math.round(16 * LPcontrols2.Global.dp)
                    width: parent.width - 2 * x
                    elide: Text.ElideRight
                    text: (parent.active ? "\u2713  " : "") + parent.text
                    font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
                    font.bold: parent.active
                    color: area.pressed ? "white" : "black"
                }
                MouseArea {
                    id: area
                    anchors.fill: parent
                    onClicked: {
                        menu.visible = false
                        menu.chosen(index)
                    }
                }
            }
        }
    }
}
