import QtQuick 2.15

// A list for an e-ink panel: delegates are kept a page ahead and behind, a swipe turns a whole
// page, and nothing glides after the finger has left.
ListView {
    id: list

    property real pageStartY: 0
    readonly property int pageCount: height > 0 ? Math.max(1, Math.ceil(contentHeight / height)) : 1
    readonly property int currentPage: height > 0 ? Math.min(pageCount - 1, Math.round((contentY - originY) / height)) : 0

    function pageForward() {
        if (!atYEnd) contentY = Math.min(originY + contentHeight - height, contentY + height)
    }
    function pageBack() {
        if (!atYBeginning) contentY = Math.max(originY, contentY - height)
    }

    cacheBuffer: Math.max(0, height)
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    flickDeceleration: 100000
    maximumFlickVelocity: 1
    highlightMoveDuration: 0
    highlightResizeDuration: 0

    onMovementStarted: pageStartY = contentY
    onMovementEnded: {
        const moved = contentY - pageStartY
        contentY = pageStartY
        if (moved > height / 10) pageForward()
        else if (moved < -height / 10) pageBack()
    }
}
