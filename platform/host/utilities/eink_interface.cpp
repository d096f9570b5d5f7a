#include "eink_interface.h"

#include <QGuiApplication>

#include "host_eink_platform.h"

namespace lumenpress::utilities {

EinkInterface *EinkInterface::instance() {
  static EinkInterface interface;
  return &interface;
}

EinkPlatform *EinkInterface::platform() {
  if (!qGuiApp) return nullptr;
  // A child of the application, so it goes with it.
  static auto *platform = new platform::HostEinkPlatform;
  if (!platform->parent()) platform->setParent(qGuiApp);
  return platform;
}

}  // namespace lumenpress::utilities
