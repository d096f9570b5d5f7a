import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The store's suggestions for what is typed: words to search for, and books, each marked where
// it holds the typed text.
Item {
    id: hints

    signal termChosen(string text)
    signal bookChosen(string url)

    Column {
        width: parent.width
        Repeater {
            model: SearchSuggestion
            delegate: Rectangle {
                objectName: "searchHint"
                property string text: model.title
                property string kind: model.term
                width: hints.width
                height: Math.round((model.term === "product" ? 72 : 56) * LPcontrols2.Global.dp)
                color: hint_area.pressed ? "#e0e0e0" : "white"
                Text {
                    anchors.left: parent.left
                    anchors.leftMargin: Math.round(16 * LPcontrols2.Global.dp)
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    textFormat: Text.RichText
                    elide: Text.ElideRight
                    text: SearchSuggestion.addHtmpBackgroundColorTag(model.title)
                          + (model.author !== "" ? "<br><font color=\"#515151\">" + model.author + "</font>" : "")
                    font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
                    font.bold: model.term === "product"
                    color: "black"
                }
                LPcontrols2.DottedSeparator {
                    anchors.bottom: parent.bottom
                    width: parent.width
                }
                MouseArea {
                    id: hint_area
                    anchors.fill: parent
                    onClicked: model.term === "product" ? hints.bookChosen(model.url) : hints.termChosen(model.title)
                }
            }
        }
    }
}
