// The whole program's window for a test: a store manager started against the given storefront.
#ifndef LUMENPRESS_TESTS_STORE_WINDOW_H
#define LUMENPRESS_TESTS_STORE_WINDOW_H

#include <QQuickWindow>
#include <QStringList>

#include "devstore_process.h"
#include "quick_items.h"
#include "store_manager.h"

namespace lumenpress::testing {

class StoreWindow {
public:
  // Makes the storefront's German store the device's store, then starts the program.
  explicit StoreWindow(const DevstoreProcess &store);

  bool started() const { return window_ != nullptr; }
  QQuickWindow *window() const { return window_; }
  QQuickItem *item(const char *name) const;
  // The shown items of that name, and their texts.
  QList<QQuickItem *> shown(const char *name) const;
  QStringList texts(const char *name) const;
  // An object the program publishes to its screens, by its name there.
  QObject *published(const char *name) const;

private:
  StoreManager manager_;
  QQuickWindow *window_ = nullptr;
};

}  // namespace lumenpress::testing

#endif
