import QtQuick 2.15

// A text button with fully rounded ends.
TextButton {
    radius: height / 2
}
