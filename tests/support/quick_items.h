// Finding and tapping items of a Qt Quick window by name. Delegates and loaded views hang in the
// tree of visual items, not always in the tree of objects, so the search follows the former.
#ifndef LUMENPRESS_TESTS_QUICK_ITEMS_H
#define LUMENPRESS_TESTS_QUICK_ITEMS_H

#include <QList>
#include <QQuickItem>
#include <QString>

namespace lumenpress::testing {

QQuickItem *findItem(QQuickItem *root, const QString &objectName);
// Every item of that name in the order of the visual tree; with visibleOnly, those shown.
QList<QQuickItem *> findItems(QQuickItem *root, const QString &objectName, bool visibleOnly = false);
// A click in the middle of the item, once the window has drawn it where it stays.
void tap(QQuickItem *item);

}  // namespace lumenpress::testing

#endif
