import QtQuick 2.15

// A list for an e-ink panel: delegates are kept a page ahead and behind, a swipe turns a whole
// page, and nothing glides after the finger has left.
ListView {
    id: list

    property real pageStartY: 0
    readonly property int pageCount: height > 0 ? Math.max(1, Math.ceil(contentHeight / height)) : 1
    readonly property int currentPage: height > 0 ? Math.min(pageCount - 1, Math.round((contentY - originY) / height)) : 0

    // A page turn starts with the row the page cut off, so that no row is seen only in halves.
    function pageForward() {
        if (atYEnd) return
        const next = rowAt(contentY + height, 1)
        if (next > indexAt(width / 2, contentY)) positionViewAtIndex(next, ListView.Beginning)
        else contentY = Math.min(originY + contentHeight - height, contentY + height)
    }
    function pageBack() {
        if (atYBeginning) return
        const previous = rowAt(contentY - 1, -1)
        const before = contentY
        if (previous >= 0) positionViewAtIndex(previous, ListView.End)
        if (previous < 0 || contentY >= before) contentY = Math.max(originY, before - height)
    }
    // The row at y, or the nearest one in the direction given when y falls between rows.
    function rowAt(y, direction) {
        for (let step = 0; step <= spacing + 1; ++step) {
            const row = indexAt(width / 2, y + step * direction)
            if (row >= 0) return row
        }
        return -1
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
