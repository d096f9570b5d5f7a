import QtQuick 2.15
import com.lumenpress.bookstore 1.0

// The covers of a series or collection stacked, the first in front and the others rising
// behind it to the right.
Item {
    id: stack

    property var covers: []
    property string title: ""

    Repeater {
        model: stack.covers.length
        Cover {
            z: -index
            x: Math.round(index * BookstoreConstants.topImageInterval)
            y: Math.round((stack.covers.length - 1 - index) * BookstoreConstants.topImageBordeInterval)
            width: stack.width - (stack.covers.length - 1) * BookstoreConstants.topImageInterval
            height: stack.height - (stack.covers.length - 1) * BookstoreConstants.topImageBordeInterval
            url: stack.covers[index]
            title: index === 0 ? stack.title : ""
        }
    }
}
