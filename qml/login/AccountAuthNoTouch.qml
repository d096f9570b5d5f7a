import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The first step on a device without a touch panel: the keys move between the answers.
Item {
    id: no_touch

    signal loginDevice()
    signal skip()

    LoginStepFrame {
        title: qsTr("@LogIn")
        description: qsTr("@LoginStartText")

        LoginButton {
            id: by_email
            objectName: "loginWithEmail"
            width: parent.width
            text: qsTr("@LoginWithEmail")
            border.width: activeFocus ? Math.round(4 * LPcontrols2.Global.dp) : Math.round(2 * LPcontrols2.Global.dp)
            focus: true
            KeyNavigation.down: not_now
            Keys.onReturnPressed: no_touch.loginDevice()
            onClicked: no_touch.loginDevice()
        }
        LoginButton {
            id: not_now
            objectName: "loginSkip"
            width: parent.width
            primary: false
            visible: !UserData.setupWizardNoSkip
            text: qsTr("@NotNow")
            border.width: activeFocus ? Math.round(4 * LPcontrols2.Global.dp) : Math.round(2 * LPcontrols2.Global.dp)
            KeyNavigation.up: by_email
            Keys.onReturnPressed: no_touch.skip()
            onClicked: no_touch.skip()
        }
    }
    Component.onCompleted: by_email.forceActiveFocus()
}
