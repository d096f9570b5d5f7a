#include "quick_items.h"

#include <QPointer>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

namespace lumenpress::testing {

namespace {

void collect(QQuickItem *item, const QString &name, bool visibleOnly, QList<QQuickItem *> *found) {
  if (item->objectName() == name && (!visibleOnly || item->isVisible())) *found << item;
  for (QQuickItem *child : item->childItems()) collect(child, name, visibleOnly, found);
}

}  // namespace

QQuickItem *findItem(QQuickItem *root, const QString &objectName) {
  return findItems(root, objectName).value(0);
}

QList<QQuickItem *> findItems(QQuickItem *root, const QString &objectName, bool visibleOnly) {
  QList<QQuickItem *> found;
  if (root) collect(root, objectName, visibleOnly, &found);
  return found;
}

void tap(QQuickItem *item) {
  // Positioners place what has just appeared while the next frame is prepared; a tap before it
  // lands where the item is about to leave.
  const QPointer<QQuickItem> target(item);
  QSignalSpy drawn(item->window(), &QQuickWindow::frameSwapped);
  item->window()->update();
  drawn.wait(1000);
  if (!target) return;
  const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
  QTest::mouseClick(item->window(), Qt::LeftButton, Qt::NoModifier, centre.toPoint());
}

}  // namespace lumenpress::testing
