import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// A cover through the cover provider, at the exact size it is shown; the title stands in its
// frame until the picture arrives or when there is none.
Rectangle {
    id: frame

    property string url: ""
    property string title: ""

    color: "#e6e6e6"
    border.color: "#808080"
    border.width: 1

    Text {
        anchors.fill: parent
        anchors.margins: Math.round(6 * LPcontrols2.Global.dp)
        visible: image.status !== Image.Ready
        text: frame.title
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.pixelSize: Math.round(14 * LPcontrols2.Global.dp)
        color: "#333333"
    }
    Image {
        id: image
        objectName: "cover"
        anchors.fill: parent
        asynchronous: true
        cache: false
        sourceSize.width: width
        sourceSize.height: height
        source: frame.url !== "" && width > 0 ? "image://url_image/" + frame.url : ""
    }
}
