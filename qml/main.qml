import QtQuick 2.15
import QtQuick.Window 2.15

Window {
    id: root
    visible: true
    width: 758
    height: 1024
    color: "white"
    title: "kiosk-2"

    Home {
        id: home
        objectName: "home"
        anchors.fill: parent
    }

    Component.onCompleted: {
        RootListModel.setLoadSubmodels(true)
        StoreManager.loadHomeModels()
    }
}
