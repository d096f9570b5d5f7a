import QtQuick 2.15

// An image that tries again when loading fails, as a network that has just woken up often makes
// the first try fail. It gives up after retries attempts.
Image {
    id: image

    property int retries: 3
    property int retryInterval: 2000
    property int attempts: 0
    property bool reloading: false

    asynchronous: true
    fillMode: Image.PreserveAspectFit

    onSourceChanged: if (!reloading) attempts = 0
    onStatusChanged: if (status === Image.Error && attempts < retries) retry.restart()

    Timer {
        id: retry
        interval: image.retryInterval
        onTriggered: {
            const again = image.source
            image.reloading = true
            image.attempts += 1
            image.source = ""
            image.source = again
            image.reloading = false
        }
    }
}
