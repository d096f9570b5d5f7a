import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The first step on a touch device: how to sign in, or not now.
Item {
    id: start_view

    signal loginAndroid()
    signal loginDevice()
    signal skip()

    LoginStepFrame {
        id: frame
        title: qsTr("@LogIn")
        description: qsTr("@LoginStartText")

        LoginButton {
            objectName: "loginWithEmail"
            width: parent.width
            text: qsTr("@LoginWithEmail")
            onClicked: start_view.loginDevice()
        }
        LoginButton {
            objectName: "loginSkip"
            width: parent.width
            primary: false
            visible: !UserData.setupWizardNoSkip
            text: qsTr("@NotNow")
            onClicked: start_view.skip()
        }
    }
}
