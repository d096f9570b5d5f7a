import QtQuick 2.15
import com.lumenpress.controls 2.0

// A text button with slightly rounded corners.
TextButton {
    radius: Math.round(6 * Global.dp)
}
