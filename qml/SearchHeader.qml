import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The search line: back, the field, and the button that searches for what was typed.
Rectangle {
    id: header

    property alias text: field.text
    signal back()
    signal search(string text)

    // Whoever opens the search means to type.
    function takeFocus() { field.forceActiveFocus() }

    height: Math.round(72 * LPcontrols2.Global.dp)
    color: "white"

    LPcontrols2.TextButton {
        id: back_button
        objectName: "searchBack"
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        width: height
        height: Math.round(56 * LPcontrols2.Global.dp)
        bordered: false
        text: "\u2039"
        font.pixelSize: Math.round(36 * LPcontrols2.Global.dp)
        onClicked: header.back()
    }
    Rectangle {
        anchors.left: back_button.right
        anchors.right: go.left
        anchors.rightMargin: Math.round(8 * LPcontrols2.Global.dp)
        anchors.verticalCenter: parent.verticalCenter
        height: Math.round(52 * LPcontrols2.Global.dp)
        radius: Math.round(6 * LPcontrols2.Global.dp)
        border.color: "black"
        border.width: Math.round(2 * LPcontrols2.Global.dp)
        TextInput {
            id: field
            objectName: "searchField"
            anchors.fill: parent
            anchors.leftMargin: Math.round(12 * LPcontrols2.Global.dp)
            anchors.rightMargin: Math.round(12 * LPcontrols2.Global.dp)
            verticalAlignment: TextInput.AlignVCenter
            font.pixelSize: Math.round(22 * LPcontrols2.Global.dp)
            clip: true
            focus: true
            onTextChanged: SearchSuggestion.updateSearchStr(text)
            onAccepted: if (text.trim() !== "") header.search(text.trim())
        }
        Text {
            anchors.fill: field
            verticalAlignment: Text.AlignVCenter
            visible: field.text === ""
            text: qsTr("@SearchHint")
            font.pixelSize: field.font.pixelSize
            color: "#7f7f7f"
        }
    }
    LPcontrols2.RoundedCornerTextButton {
        id: go
        objectName: "searchGo"
        anchors.right: parent.right
        anchors.rightMargin: Math.round(8 * LPcontrols2.Global.dp)
        anchors.verticalCenter: parent.verticalCenter
        height: Math.round(52 * LPcontrols2.Global.dp)
        text: qsTr("@Search")
        enabled: field.text.trim() !== ""
        onClicked: header.search(field.text.trim())
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Math.round(2 * LPcontrols2.Global.dp)
        color: "black"
    }
}
