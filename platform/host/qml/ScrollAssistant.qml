import QtQuick 2.15
import com.lumenpress.controls 2.0

// Page buttons for a view on an e-ink panel, which turns pages instead of scrolling smoothly.
Item {
    id: assistant

    property Flickable target: null
    readonly property bool canPageBack: target !== null && target.contentY > target.originY
    readonly property bool canPageForward: target !== null && target.contentY + target.height < target.originY + target.contentHeight - 1

    implicitWidth: Math.round(64 * Global.dp)
    implicitHeight: column.implicitHeight
    visible: canPageBack || canPageForward

    function pageBack() {
        if (canPageBack) target.contentY = Math.max(target.originY, target.contentY - target.height)
    }
    function pageForward() {
        if (canPageForward)
            target.contentY = Math.min(target.originY + target.contentHeight - target.height, target.contentY + target.height)
    }

    Column {
        id: column
        spacing: Math.round(8 * Global.dp)
        RoundTextButton {
            objectName: "pageBack"
            width: assistant.width
            height: width
            text: "▲"
            enabled: assistant.canPageBack
            onClicked: assistant.pageBack()
        }
        RoundTextButton {
            objectName: "pageForward"
            width: assistant.width
            height: width
            text: "▼"
            enabled: assistant.canPageForward
            onClicked: assistant.pageForward()
        }
    }
}
