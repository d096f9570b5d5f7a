import QtQuick 2.15
import com.lumenpress.controls 2.0

// A circular button, for one sign or a short word.
TextButton {
    implicitWidth: Math.round(56 * Global.dp)
    implicitHeight: implicitWidth
    radius: Math.min(width, height) / 2
}
