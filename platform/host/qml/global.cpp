#include "global.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include "lp_log.h"
#include "panelkit.h"

namespace {

constexpr char kDeviceConfig[] = "/coreapp/config/device.cfg";
// The density of the reader's six-inch panel.
constexpr int kDefaultDpi = 212;
constexpr qreal kBaseDpi = 160.0;

int panelDpi() {
  lpconfig *config = OpenConfig(kDeviceConfig, 0);
  const int dpi = ReadInt(config, "dpi", kDefaultDpi);
  CloseConfigNoSave(config);
  return dpi > 0 ? dpi : kDefaultDpi;
}

}  // namespace

Global::Global(QQmlEngine *engine, QObject *parent) : QObject(parent), engine_(engine), dp_(panelDpi() / kBaseDpi) {}

QQuickItem *Global::messageParent() const {
  if (auto *window = qobject_cast<QQuickWindow *>(QGuiApplication::focusWindow())) return window->contentItem();
  for (QWindow *candidate : QGuiApplication::topLevelWindows()) {
    auto *window = qobject_cast<QQuickWindow *>(candidate);
    if (window && window->isVisible()) return window->contentItem();
  }
  return nullptr;
}

void Global::openInfoMessage(const QString &text) {
  QQuickItem *parent = messageParent();
  if (!parent) {
    LP_LOG(LP_LOG_WARNING, "no window for the message [%s]", qUtf8Printable(text));
    return;
  }
  if (message_) QMetaObject::invokeMethod(message_, "close");
  QQmlComponent component(engine_, QUrl(QStringLiteral("qrc:/lumenpress/controls/InfoMessage.qml")));
  QObject *object = component.beginCreate(engine_->rootContext());
  auto *item = qobject_cast<QQuickItem *>(object);
  if (!item) {
    LP_LOG(LP_LOG_ERROR, "InfoMessage: %s", qUtf8Printable(component.errorString()));
    delete object;
    return;
  }
  item->setParent(parent);
  item->setParentItem(parent);
  item->setProperty("text", text);
  item->setProperty("destroyOnClose", true);
  // Made here but let go by the message itself when it closes.
  QQmlEngine::setObjectOwnership(item, QQmlEngine::JavaScriptOwnership);
  component.completeCreate();
  QMetaObject::invokeMethod(item, "open");
  message_ = item;
}
