import QtQuick 2.15
import com.lumenpress.controls 2.0

// The way the owner came, as a row of titles; the last is where they are. A model row gives its
// text in the role "title".
Item {
    id: crumbs

    property alias model: repeater.model
    property int fontSize: Math.round(18 * Global.dp)

    signal crumbClicked(int index)

    implicitHeight: Math.round(44 * Global.dp)
    clip: true

    Row {
        id: row
        anchors.verticalCenter: parent.verticalCenter
        // The newest steps stay in sight when the path is longer than the bar.
        x: Math.min(0, crumbs.width - width)
        spacing: Math.round(6 * Global.dp)

        Repeater {
            id: repeater

            Row {
                spacing: Math.round(6 * Global.dp)
                Text {
                    visible: index > 0
                    text: "›"
                    font.pixelSize: crumbs.fontSize
                    color: "#555555"
                }
                Text {
                    objectName: "crumb"
                    text: model.title !== undefined ? model.title : modelData
                    font.pixelSize: crumbs.fontSize
                    font.bold: index === repeater.count - 1
                    font.underline: index < repeater.count - 1
                    color: "black"
                    MouseArea {
                        anchors.fill: parent
                        anchors.margins: -Math.round(8 * Global.dp)
                        enabled: index < repeater.count - 1
                        onClicked: crumbs.crumbClicked(index)
                    }
                }
            }
        }
    }
}
