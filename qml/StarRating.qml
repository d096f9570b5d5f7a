import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// A rating of 0 to 5 as five stars, the filled ones black.
Row {
    id: stars

    property real rating: 0
    property int size: Math.round(18 * LPcontrols2.Global.dp)

    spacing: Math.round(2 * LPcontrols2.Global.dp)
    visible: rating > 0

    Repeater {
        model: 5
        Text {
            text: index < Math.round(stars.rating) ? "\u2605" : "\u2606"
            font.pixelSize: stars.size
            color: "black"
        }
    }
}
