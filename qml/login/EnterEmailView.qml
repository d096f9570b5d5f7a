import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// Asks for the address; the flow then knows whether to ask for a password or make an account.
Item {
    id: email_view

    property alias email: email_field.text
    property alias busy: frame.busy
    signal next(string email)
    signal back()

    function submit() {
        const address = email_field.text.trim()
        if (address.length > 0)
            email_view.next(address)
    }

    LoginStepFrame {
        id: frame
        title: qsTr("@LogIn")
        description: qsTr("@EnterEmailText")

        LoginTextField {
            id: email_field
            objectName: "emailField"
            width: parent.width
            hint: qsTr("@email")
            input.inputMethodHints: Qt.ImhEmailCharactersOnly | Qt.ImhNoAutoUppercase
            onAccepted: email_view.submit()
        }
        LoginButton {
            objectName: "emailNext"
            width: parent.width
            enabled: email_field.text.trim().length > 0
            text: qsTr("@Next")
            onClicked: email_view.submit()
        }
        LoginButton {
            width: parent.width
            primary: false
            text: qsTr("@Back")
            onClicked: email_view.back()
        }
    }
    Component.onCompleted: email_field.input.forceActiveFocus()
}
