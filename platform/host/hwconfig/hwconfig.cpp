#include "hwconfig.h"

#include "panelkit.h"

namespace {

// A PC plays a device that has everything unless /coreapp/config/device.cfg says otherwise.
int deviceFlag(const char *key) {
  lpconfig *cfg = OpenConfig("/coreapp/config/device.cfg", 0);
  if (!cfg) return 1;
  const int value = ReadInt(cfg, key, 1);
  CloseConfigNoSave(cfg);
  return value != 0 ? 1 : 0;
}

}  // namespace

extern "C" int _device_has_audio(void) {
  return deviceFlag("has_audio");
}

extern "C" int _device_touchpanel(void) {
  return deviceFlag("touchpanel");
}

extern "C" int _device_wifi(void) {
  return deviceFlag("wifi");
}
