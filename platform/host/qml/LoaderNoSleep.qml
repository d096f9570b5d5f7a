import QtQuick 2.15

// A view that is made once and loads its file on demand. Loading is synchronous, so the panel is
// never left showing half a view while the device would otherwise doze off.
Loader {
    asynchronous: false
    active: true
}
