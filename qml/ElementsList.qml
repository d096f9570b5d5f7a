import QtQuick 2.15

// The books of one home row, side by side.
ListView {
    id: books
    objectName: "elementsList"
    height: 300
    orientation: ListView.Horizontal
    spacing: 16
    clip: true
    interactive: false

    delegate: Column {
        width: 160
        spacing: 4

        Rectangle {
            width: 160
            height: 210
            color: "#eeeeee"
            border.color: "#888888"

            Image {
                objectName: "cover"
                anchors.fill: parent
                anchors.margins: 1
                source: cover_url
                fillMode: Image.PreserveAspectFit
            }
        }
        Text {
            objectName: "bookTitle"
            width: parent.width
            text: title
            elide: Text.ElideRight
            font.pixelSize: 16
            font.bold: true
        }
        Text {
            width: parent.width
            text: author ? author : ""
            elide: Text.ElideRight
            font.pixelSize: 14
            color: "#444444"
        }
        Text {
            objectName: "bookPrice"
            text: price_with_code
            font.pixelSize: 14
        }
    }
}
