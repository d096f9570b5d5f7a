import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The user's icon in the header, in the user's own colour; a tap opens the user menu.
Item {
    id: user_icon

    property string location: UserMenu ? UserMenu.getIconLocation() : ""

    implicitWidth: Math.round(56 * LPcontrols2.Global.dp)
    implicitHeight: implicitWidth

    function refresh() { location = UserMenu ? UserMenu.getIconLocation() : "" }

    Image {
        objectName: "userIconImage"
        anchors.fill: parent
        anchors.margins: Math.round(4 * LPcontrols2.Global.dp)
        source: user_icon.location
        sourceSize.width: width
        sourceSize.height: height
        smooth: false
    }
    MouseArea {
        anchors.fill: parent
        onClicked: root.openCustomPopUp()
    }
    Connections {
        target: UserMenu
        function onUpdateSavedIcon() { user_icon.refresh() }
        function onModelReset() { user_icon.refresh() }
    }
}
