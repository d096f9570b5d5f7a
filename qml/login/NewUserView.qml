import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// An address the store does not know: the name of the new account, and the newsletter.
Item {
    id: new_user_view

    property string email: ""
    signal next(string user_name, string user_surname, bool want_newsletter)
    signal back()

    LoginStepFrame {
        title: qsTr("@CreateAccount")
        description: qsTr("@NewAccountText").arg(new_user_view.email)

        LoginTextField {
            id: name_field
            objectName: "firstNameField"
            width: parent.width
            hint: qsTr("@FirstName")
            onAccepted: surname_field.input.forceActiveFocus()
        }
        LoginTextField {
            id: surname_field
            objectName: "lastNameField"
            width: parent.width
            hint: qsTr("@LastName")
        }
        Item {
            id: newsletter
            objectName: "newsletterChoice"
            property bool checked: false
            width: parent.width
            height: Math.round(48 * LPcontrols2.Global.dp)
            Rectangle {
                id: box
                anchors.verticalCenter: parent.verticalCenter
                width: Math.round(32 * LPcontrols2.Global.dp)
                height: width
                border.color: "black"
                border.width: Math.round(2 * LPcontrols2.Global.dp)
                Rectangle {
                    anchors.fill: parent
                    anchors.margins: Math.round(7 * LPcontrols2.Global.dp)
                    color: "black"
                    visible: newsletter.checked
                }
            }
            Text {
                anchors.left: box.right
                anchors.leftMargin: Math.round(16 * LPcontrols2.Global.dp)
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("@WantNewsletter")
                wrapMode: Text.Wrap
                font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
                color: "black"
            }
            MouseArea {
                anchors.fill: parent
                onClicked: newsletter.checked = !newsletter.checked
            }
        }
        LoginButton {
            objectName: "newUserNext"
            width: parent.width
            enabled: name_field.text.trim().length > 0 && surname_field.text.trim().length > 0
            text: qsTr("@Next")
            onClicked: new_user_view.next(name_field.text.trim(), surname_field.text.trim(), newsletter.checked)
        }
        LoginButton {
            width: parent.width
            primary: false
            text: qsTr("@Back")
            onClicked: new_user_view.back()
        }
    }
    Component.onCompleted: name_field.input.forceActiveFocus()
}
