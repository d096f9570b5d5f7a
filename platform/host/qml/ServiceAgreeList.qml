import QtQuick 2.15
import com.lumenpress.controls 2.0

// The documents of a service to agree to, with one box for all of them. A model row gives
// "title", "checked" and optionally "required".
Column {
    id: list

    property alias model: repeater.model
    readonly property bool allChecked: checkedCount === repeater.count && repeater.count > 0
    property int checkedCount: 0
    readonly property bool requiredChecked: missingRequired === 0
    property int missingRequired: 0

    signal toggled(int index, bool checked)
    signal openDocument(int index)

    function recount() {
        let checked = 0
        let missing = 0
        for (let i = 0; i < repeater.count; ++i) {
            const item = repeater.itemAt(i)
            if (!item) continue
            if (item.checked) ++checked
            else if (item.required) ++missing
        }
        checkedCount = checked
        missingRequired = missing
        allBox.checked = allChecked
    }
    function setAll(value) {
        for (let i = 0; i < repeater.count; ++i) {
            const item = repeater.itemAt(i)
            if (item && item.checked !== value) {
                item.checked = value
                list.toggled(i, value)
            }
        }
        recount()
    }

    spacing: Math.round(4 * Global.dp)

    ServiceAgreeElement {
        id: allBox
        objectName: "agreeAll"
        width: list.width
        visible: repeater.count > 1
        text: qsTr("@AgreeToAll")
        isLink: false
        onToggled: list.setAll(checked)
    }
    Repeater {
        id: repeater
        ServiceAgreeElement {
            width: list.width
            text: model.title !== undefined ? model.title : modelData
            checked: model.checked === true
            required: model.required === true
            onToggled: { list.recount(); list.toggled(index, checked) }
            onOpenDocument: list.openDocument(index)
        }
        onItemAdded: list.recount()
        onItemRemoved: list.recount()
    }
}
