import QtQuick 2.15
import com.lumenpress.controls 2.0

// The bottom of a step of the setup wizard: back, skip and next.
Rectangle {
    id: footer

    property bool backVisible: true
    property bool skipVisible: true
    property bool nextEnabled: true
    property string nextText: qsTr("@Next")

    signal back()
    signal skip()
    signal next()

    implicitHeight: Math.round(88 * Global.dp)
    color: "white"

    Rectangle {
        anchors.top: parent.top
        width: parent.width
        height: Math.max(1, Math.round(2 * Global.dp))
        color: "black"
    }
    RoundedCornerTextButton {
        objectName: "wizardBack"
        visible: footer.backVisible
        anchors.left: parent.left
        anchors.leftMargin: Math.round(24 * Global.dp)
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("@Back")
        onClicked: footer.back()
    }
    TextButton {
        objectName: "wizardSkip"
        visible: footer.skipVisible
        anchors.centerIn: parent
        bordered: false
        font.underline: true
        text: qsTr("@Skip")
        onClicked: footer.skip()
    }
    RoundedCornerTextButton {
        objectName: "wizardNext"
        anchors.right: parent.right
        anchors.rightMargin: Math.round(24 * Global.dp)
        anchors.verticalCenter: parent.verticalCenter
        enabled: footer.nextEnabled
        font.bold: true
        text: footer.nextText
        onClicked: footer.next()
    }
}
