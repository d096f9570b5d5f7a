import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// A model's titles as a flowing row of rounded buttons, one line after another as they need.
Item {
    id: buttons

    property var model: null
    property string caption: ""

    signal chosen(int index)

    implicitHeight: visible ? column.height : 0
    visible: flow.children.length > 1

    Column {
        id: column
        width: parent.width
        spacing: BookstoreConstants.defaultImageClearence
        Text {
            visible: buttons.caption !== ""
            text: buttons.caption
            font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
            color: "#515151"
        }
        Flow {
            id: flow
            width: parent.width
            spacing: BookstoreConstants.defaultElementClearanceHor
            Repeater {
                model: buttons.model
                delegate: LPcontrols2.RoundedTextButton {
                    objectName: "roundButton"
                    height: Math.round(46 * LPcontrols2.Global.dp)
                    width: Math.min(implicitWidth, flow.width)
                    text: model.title
                    font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
                    onClicked: buttons.chosen(index)
                }
            }
        }
    }
}
