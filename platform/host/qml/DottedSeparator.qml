import QtQuick 2.15
import com.lumenpress.controls 2.0

// A dotted line across its width (or down its height, when vertical).
Item {
    id: separator

    property bool vertical: false
    property color color: "black"
    property int dot: Math.max(1, Math.round(2 * Global.dp))
    property int gap: Math.max(2, Math.round(4 * Global.dp))

    implicitHeight: vertical ? 0 : dot
    implicitWidth: vertical ? dot : 0

    Repeater {
        model: Math.max(0, Math.floor(((separator.vertical ? separator.height : separator.width) + separator.gap) / (separator.dot + separator.gap)))
        Rectangle {
            x: separator.vertical ? 0 : index * (separator.dot + separator.gap)
            y: separator.vertical ? index * (separator.dot + separator.gap) : 0
            width: separator.dot
            height: separator.dot
            color: separator.color
        }
    }
}
