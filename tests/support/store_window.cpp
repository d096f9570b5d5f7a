#include "store_window.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>

#include "panelkit.h"

namespace lumenpress::testing {

StoreWindow::StoreWindow(const DevstoreProcess &store) {
  lpconfig *config = OpenConfig("/mnt/ext1/system/config/bookstore.cfg", 1);
  WriteString(config, "default_store", store.url("/de_de/").c_str());
  if (CloseConfig(config) != 0 || manager_.Init(0, nullptr) != 0) return;
  window_ = qobject_cast<QQuickWindow *>(QGuiApplication::topLevelWindows().value(0));
}

QQuickItem *StoreWindow::item(const char *name) const {
  return findItem(window_->contentItem(), QString::fromLatin1(name));
}

QList<QQuickItem *> StoreWindow::shown(const char *name) const {
  return findItems(window_->contentItem(), QString::fromLatin1(name), true);
}

QStringList StoreWindow::texts(const char *name) const {
  QStringList found;
  for (QQuickItem *item : shown(name)) found << item->property("text").toString();
  return found;
}

QObject *StoreWindow::published(const char *name) const {
  return qmlEngine(window_)->rootContext()->contextProperty(QString::fromLatin1(name)).value<QObject *>();
}

}  // namespace lumenpress::testing
