import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// Asks the store to mail instructions for a new password to the address.
Item {
    id: recover_view

    property string email: ""
    property alias busy: frame.busy
    signal recover(string email)
    signal back()

    LoginStepFrame {
        id: frame
        title: qsTr("@ForgotPassword")
        description: qsTr("@RecoverPasswordText").arg(recover_view.email)

        LoginButton {
            objectName: "recoverSend"
            width: parent.width
            text: qsTr("@SendInstructions")
            onClicked: recover_view.recover(recover_view.email)
        }
        LoginButton {
            width: parent.width
            primary: false
            text: qsTr("@Back")
            onClicked: recover_view.back()
        }
    }
}
