import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import qml.bookstore 1.0

// The user menu, below the user icon: who is signed in, the stores and the content languages to
// choose from, settings, and signing in or out. A tap outside closes it.
Item {
    id: menu

    property int expanded: -1
    signal closed()

    function close() { closed() }
    function choose(uid) {
        if (uid === MenuElementType.STORELIST || uid === MenuElementType.LANGUAGE) {
            expanded = expanded === uid ? -1 : uid
            StoreManager.requireHQUpdate()
            return
        }
        close()
        if (uid === MenuElementType.LOGIN)
            root.openLoginView()
        else if (uid === MenuElementType.LOGOUT)
            UserData.logout()
        else if (uid === MenuElementType.SETTINGS)
            UserData.openSettings()
    }
    function chooseStore(index) {
        close()
        if (UserData.isLoggedIn() && StoresModel.isNeedAutoLogout(index))
            root.askAutoLogout(index)
        else if (StoresModel.isLegalAccepted(index, UserData.getUserEmail()))
            StoresModel.setModelToIndex(index)
    }

    MouseArea {
        anchors.fill: parent
        onClicked: menu.close()
    }
    Rectangle {
        id: panel
        objectName: "userMenuPanel"
        anchors.right: parent.right
        anchors.rightMargin: BookstoreConstants.defaultBorderMargin
        y: Math.round(64 * LPcontrols2.Global.dp)
        width: Math.min(parent.width - 2 * BookstoreConstants.defaultBorderMargin, Math.round(480 * LPcontrols2.Global.dp))
        height: rows.height + 2 * border.width
        color: "white"
        border.color: "black"
        border.width: Math.round(3 * LPcontrols2.Global.dp)
        MouseArea {
            anchors.fill: parent
        }
        Column {
            id: rows
            x: panel.border.width
            y: panel.border.width
            width: panel.width - 2 * panel.border.width
            Repeater {
                model: UserMenu
                delegate: Column {
                    width: rows.width
                    Rectangle {
                        objectName: "userMenuRow"
                        property string text: text_
                        property int menuId: uid
                        width: parent.width
                        height: Math.round((el_kind === "title" ? 72 : 60) * LPcontrols2.Global.dp)
                        color: row_area.pressed && !is_disabled ? "black" : "white"
                        Text {
                            anchors.left: parent.left
                            anchors.right: arrow.left
                            anchors.leftMargin: Math.round(20 * LPcontrols2.Global.dp)
                            anchors.verticalCenter: parent.verticalCenter
                            text: text_
                            elide: Text.ElideRight
                            horizontalAlignment: text_align === 4 ? Text.AlignRight : Text.AlignLeft
                            font.pixelSize: Math.round((el_kind === "title" ? 22 : 24) * LPcontrols2.Global.dp)
                            font.bold: el_kind === "title"
                            // An address keeps its own case.
                            font.capitalization: el_kind === "title" ? Font.MixedCase : capitalization
                            color: is_disabled ? "#9a9a9a" : row_area.pressed ? "white" : "black"
                        }
                        Text {
                            id: arrow
                            anchors.right: parent.right
                            anchors.rightMargin: Math.round(20 * LPcontrols2.Global.dp)
                            anchors.verticalCenter: parent.verticalCenter
                            visible: el_kind === "expand"
                            text: menu.expanded === uid ? "\u25B2" : "\u25BC"
                            font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
                            color: is_disabled ? "#9a9a9a" : "black"
                        }
                        MouseArea {
                            id: row_area
                            anchors.fill: parent
                            enabled: !is_disabled && el_kind !== "title"
                            onClicked: menu.choose(uid)
                        }
                        LPcontrols2.DottedSeparator {
                            anchors.bottom: parent.bottom
                            width: parent.width
                        }
                    }
                    Column {
                        width: parent.width
                        visible: menu.expanded === uid
                        Repeater {
                            model: menu.expanded === uid
                                   ? (uid === MenuElementType.STORELIST ? StoresModel : LanguageModel) : null
                            delegate: Rectangle {
                                objectName: uid === MenuElementType.STORELIST ? "storeChoice" : "languageChoice"
                                property string text: text_
                                width: parent.width
                                height: Math.round(52 * LPcontrols2.Global.dp)
                                color: choice_area.pressed ? "black" : "#f2f2f2"
                                Text {
                                    anchors.left: parent.left
                                    anchors.leftMargin: Math.round(44 * LPcontrols2.Global.dp)
                                    anchors.verticalCenter: parent.verticalCenter
                                    text: (is_active ? "\u2713  " : "") + text_
                                    font.pixelSize: Math.round(22 * LPcontrols2.Global.dp)
                                    font.bold: is_active
                                    color: choice_area.pressed ? "white" : "black"
                                }
                                MouseArea {
                                    id: choice_area
                                    anchors.fill: parent
                                    onClicked: {
                                        if (uid === MenuElementType.STORELIST) {
                                            menu.chooseStore(index)
                                        } else {
                                            menu.close()
                                            LanguageModel.setModelToIndex(index)
                                        }
                                    }
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}
