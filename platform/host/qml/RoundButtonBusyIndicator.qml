import QtQuick 2.15
import com.lumenpress.controls 2.0

// A rounded button that shows that its work is under way, and takes no second press meanwhile.
RoundedTextButton {
    id: button

    property bool busy: false

    enabled: !busy
    showText: !busy

    BusyIndicator {
        anchors.centerIn: parent
        height: parent.height * 0.7
        width: height
        running: button.busy
        label: ""
    }
}
