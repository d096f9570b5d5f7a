#include "controls_plugin.h"

#include <QCoreApplication>
#include <QQmlEngine>
#include <QUrl>

#include "device_info_provider.h"
#include "global.h"
#include "lang_translator.h"

namespace {

// Every control is a QML file of the plugin's resources.
constexpr const char *kControls[] = {
    "LoaderNoSleep",
    "AppHeader",
    "Breadcrumbs",
    "ScrollAssistant",
    "BitmapButton",
    "BitmapTextButton",
    "TextButton",
    "RoundTextButton",
    "RoundedCornerTextButton",
    "RoundedTextButton",
    "RoundButtonBusyIndicator",
    "BusyIndicator",
    "DottedSeparator",
    "DialogContainer",
    "DialogHeader",
    "DialogFooter",
    "ConfirmationDialog",
    "InfoMessage",
    "WizardHeader",
    "WizardFooter",
    "AutoReloadImage",
    "AdvancedRectangle",
    "CachedListView",
    "DelayedMouseArea",
    "ScrollIndicator",
    "SectionHeader",
    "GroupSelectionPanel",
    "ServiceAgreeElement",
    "ServiceAgreeList",
};

// The screens import the module under two versions.
constexpr int kMajor = 2;
constexpr int kMinors[] = {0, 1};

QObject *makeDeviceInfo(QQmlEngine *, QJSEngine *) {
  return new DeviceInfoProvider;
}

QObject *makeGlobal(QQmlEngine *engine, QJSEngine *) {
  return new Global(engine);
}

}  // namespace

void ControlsPlugin::registerTypes(const char *uri) {
  for (const int minor : kMinors) {
    for (const char *name : kControls) {
      const QUrl file(QStringLiteral("qrc:/lumenpress/controls/%1.qml").arg(QLatin1String(name)));
      qmlRegisterType(file, uri, kMajor, minor, name);
    }
    qmlRegisterSingletonType<DeviceInfoProvider>(uri, kMajor, minor, "DeviceInfoProvider", makeDeviceInfo);
    qmlRegisterSingletonType<Global>(uri, kMajor, minor, "Global", makeGlobal);
  }
}

// The device's screens write language keys ("@Open") where a text belongs; the module's translator
// turns them into the device's language.
void ControlsPlugin::initializeEngine(QQmlEngine *, const char *) {
  static LangTranslator *translator = nullptr;
  if (translator) return;
  translator = new LangTranslator(QCoreApplication::instance());
  QCoreApplication::installTranslator(translator);
}
