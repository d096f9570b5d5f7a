import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The end of the flow: who is signed in now, and for a new account that the mail is to be verified.
FocusScope {
    id: welcome_view

    property bool verifyAccount: false
    property string email: ""
    signal finish()

    function setVerifyAccount(value) { verifyAccount = value }
    function setEmailText(value) { email = value }

    LoginStepFrame {
        title: qsTr("@Welcome")
        description: (welcome_view.verifyAccount ? qsTr("@WelcomeNewAccount") : qsTr("@WelcomeBack")).arg(welcome_view.email)

        LoginButton {
            objectName: "welcomeFinish"
            width: parent.width
            text: qsTr("@StartShopping")
            focus: true
            Keys.onReturnPressed: welcome_view.finish()
            onClicked: welcome_view.finish()
        }
    }
}
