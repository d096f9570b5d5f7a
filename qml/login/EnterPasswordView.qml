import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The password of a known address.
Item {
    id: password_view

    property string email: ""
    property alias busy: frame.busy
    signal login(string password)
    signal forgot()
    signal back()

    function submit() {
        if (password_field.text.length > 0)
            password_view.login(password_field.text)
    }

    LoginStepFrame {
        id: frame
        title: qsTr("@EnterPassword")
        description: password_view.email

        LoginTextField {
            id: password_field
            objectName: "passwordField"
            width: parent.width
            secret: true
            hint: qsTr("@Password")
            onAccepted: password_view.submit()
        }
        LoginButton {
            objectName: "passwordLogin"
            width: parent.width
            enabled: password_field.text.length > 0
            text: qsTr("@LogIn")
            onClicked: password_view.submit()
        }
        LoginButton {
            objectName: "passwordForgot"
            width: parent.width
            primary: false
            text: qsTr("@ForgotPassword")
            onClicked: password_view.forgot()
        }
        LoginButton {
            width: parent.width
            primary: false
            text: qsTr("@Back")
            onClicked: password_view.back()
        }
    }
    Component.onCompleted: password_field.input.forceActiveFocus()
}
