// Registers the controls and singletons of com.lumenpress.controls with the QML engine.
#ifndef LUMENPRESS_HOST_CONTROLS_PLUGIN_H
#define LUMENPRESS_HOST_CONTROLS_PLUGIN_H

#include <QQmlExtensionPlugin>

class ControlsPlugin : public QQmlExtensionPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
  void registerTypes(const char *uri) override;
  void initializeEngine(QQmlEngine *engine, const char *uri) override;
};

#endif
