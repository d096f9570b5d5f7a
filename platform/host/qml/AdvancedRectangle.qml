import QtQuick 2.15

// A rectangle whose four sides have borders of their own width, which Rectangle cannot draw.
Rectangle {
    id: rectangle

    property int topBorder: 0
    property int bottomBorder: 0
    property int leftBorder: 0
    property int rightBorder: 0
    property color borderColor: "black"

    color: "white"

    Rectangle {
        visible: rectangle.topBorder > 0
        anchors.top: parent.top
        width: parent.width
        height: rectangle.topBorder
        color: rectangle.borderColor
    }
    Rectangle {
        visible: rectangle.bottomBorder > 0
        anchors.bottom: parent.bottom
        width: parent.width
        height: rectangle.bottomBorder
        color: rectangle.borderColor
    }
    Rectangle {
        visible: rectangle.leftBorder > 0
        anchors.left: parent.left
        width: rectangle.leftBorder
        height: parent.height
        color: rectangle.borderColor
    }
    Rectangle {
        visible: rectangle.rightBorder > 0
        anchors.right: parent.right
        width: rectangle.rightBorder
        height: parent.height
        color: rectangle.borderColor
    }
}
