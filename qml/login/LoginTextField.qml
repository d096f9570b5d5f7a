import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// One line to type into, framed, with a grey hint while it is empty.
Rectangle {
    id: field

    property alias text: input.text
    property alias hint: hint_text.text
    property bool secret: false
    property alias input: input
    signal accepted()

    height: Math.round(56 * LPcontrols2.Global.dp)
    color: "white"
    border.color: input.activeFocus ? "black" : "#515151"
    border.width: Math.round((input.activeFocus ? 3 : 2) * LPcontrols2.Global.dp)
    radius: Math.round(6 * LPcontrols2.Global.dp)

    TextInput {
        id: input
        anchors.fill: parent
        anchors.leftMargin: Math.round(16 * LPcontrols2.Global.dp)
        anchors.rightMargin: Math.round(16 * LPcontrols2.Global.dp)
        verticalAlignment: TextInput.AlignVCenter
        font.pixelSize: Math.round(22 * LPcontrols2.Global.dp)
        color: "black"
        clip: true
        echoMode: field.secret ? TextInput.Password : TextInput.Normal
        inputMethodHints: field.secret ? Qt.ImhHiddenText | Qt.ImhNoPredictiveText : Qt.ImhNone
        onAccepted: field.accepted()
    }
    Text {
        id: hint_text
        anchors.fill: input
        verticalAlignment: Text.AlignVCenter
        font.pixelSize: input.font.pixelSize
        color: "#7f7f7f"
        visible: input.text.length === 0
    }
    MouseArea {
        anchors.fill: parent
        onClicked: input.forceActiveFocus()
    }
}
