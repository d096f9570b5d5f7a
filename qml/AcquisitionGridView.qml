import QtQuick 2.15

// A feed of books as a grid of covers.
AcquisitionListView {
    grid: true
}
