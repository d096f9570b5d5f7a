#include "control_scene.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QScreen>

#include "event_wait.h"
#include "quick_items.h"

namespace lumenpress::testing {

ControlScene::ControlScene(const QString &body) {
  view_.resize(758, 1024);
  view_.setColor(Qt::white);
  const QString source = QStringLiteral(
                             "import QtQuick 2.15\nimport com.lumenpress.controls 2.0\n"
                             "Item {\nid: scene\nwidth: 758; height: 1024\n%1\n}\n")
                             .arg(body);
  QQmlComponent component(view_.engine());
  component.setData(source.toUtf8(), QUrl(QStringLiteral("file:///scene.qml")));
  QObject *object = component.create();
  root_ = qobject_cast<QQuickItem *>(object);
  if (!root_) {
    errors_ = component.errorString();
    delete object;
    return;
  }
  view_.setContent(QUrl(), nullptr, root_);
  view_.show();
  waitUntil([this] { return view_.isExposed(); });
}

QQuickItem *ControlScene::item(const QString &objectName) const {
  return findItem(root_, objectName);
}

QList<QQuickItem *> ControlScene::items(const QString &objectName) const {
  return findItems(root_, objectName);
}

void ControlScene::tap(QQuickItem *item) {
  lumenpress::testing::tap(item);
}

QImage ControlScene::grab() {
  bool swapped = false;
  const auto connection = QObject::connect(&view_, &QQuickWindow::frameSwapped, [&swapped] { swapped = true; });
  view_.update();
  waitUntil([&swapped] { return swapped; });
  QObject::disconnect(connection);
  return view_.screen()->grabWindow(view_.winId()).toImage();
}

int darkPixels(const QImage &image, const QRect &area) {
  int dark = 0;
  const QRect inside = area.intersected(image.rect());
  for (int y = inside.top(); y <= inside.bottom(); ++y) {
    for (int x = inside.left(); x <= inside.right(); ++x) dark += qGray(image.pixel(x, y)) < 128;
  }
  return dark;
}

QRect areaOf(QQuickItem *item) {
  return item->mapRectToScene(QRectF(0, 0, item->width(), item->height())).toAlignedRect();
}

}  // namespace lumenpress::testing
