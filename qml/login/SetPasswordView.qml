import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The password of the new account, typed twice; the store takes none shorter than six characters.
Item {
    id: set_password_view

    readonly property int shortest: 6
    property alias busy: frame.busy
    signal create(string password)
    signal back()

    function problem() {
        if (first.text.length < shortest)
            return qsTr("@PasswordTooShort").arg(shortest)
        if (second.text !== first.text)
            return qsTr("@PasswordsDiffer")
        return ""
    }

    LoginStepFrame {
        id: frame
        title: qsTr("@SetPassword")
        description: qsTr("@PasswordTooShort").arg(set_password_view.shortest)

        LoginTextField {
            id: first
            objectName: "newPasswordField"
            width: parent.width
            secret: true
            hint: qsTr("@Password")
            onAccepted: second.input.forceActiveFocus()
        }
        LoginTextField {
            id: second
            objectName: "repeatPasswordField"
            width: parent.width
            secret: true
            hint: qsTr("@RepeatPassword")
        }
        LoginButton {
            objectName: "createAccount"
            width: parent.width
            enabled: first.text.length > 0 && second.text.length > 0
            text: qsTr("@CreateAccount")
            onClicked: {
                const why = set_password_view.problem()
                if (why !== "")
                    LPcontrols2.Global.openInfoMessage(why)
                else
                    set_password_view.create(first.text)
            }
        }
        LoginButton {
            width: parent.width
            primary: false
            text: qsTr("@Back")
            onClicked: set_password_view.back()
        }
    }
    Component.onCompleted: first.input.forceActiveFocus()
}
