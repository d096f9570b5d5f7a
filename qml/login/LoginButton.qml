import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// An answer of a login step; the main one is set in bold.
LPcontrols2.RoundedCornerTextButton {
    property bool primary: true

    height: Math.round(56 * LPcontrols2.Global.dp)
    font.pixelSize: Math.round(22 * LPcontrols2.Global.dp)
    font.bold: primary
}
