import QtQuick 2.15

// The home page: one row per list of the store's home feed, each with its first books.
Item {
    id: home

    Text {
        id: loading
        anchors.centerIn: parent
        visible: RootListModel !== null && RootListModel.isListLoading && rows.count === 0
        text: "…"
        font.pixelSize: 40
    }

    ListView {
        id: rows
        objectName: "homeRows"
        anchors.fill: parent
        anchors.margins: 16
        spacing: 24
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: RootListModel

        delegate: Column {
            width: rows.width
            spacing: 8

            Text {
                objectName: "rowTitle"
                text: title
                font.pixelSize: 26
                font.bold: true
                color: "black"
            }
            Rectangle {
                width: parent.width
                height: 2
                color: "black"
            }
            ElementsList {
                width: parent.width
                model: element_model
            }
        }

        onAtYEndChanged: if (atYEnd && count > 0) RootListModel.loadNext()
    }
}
