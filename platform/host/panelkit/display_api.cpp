// The panel's display settings on a PC, read from the device's configuration at each call so
// that a change shows at once: the panel kind in /coreapp/config/device.cfg, the owner's
// inversion and adjustment in global.cfg.
#include "panelkit.h"
#include "panelkit_draw.h"

namespace {

const char kDeviceConfig[] = "/coreapp/config/device.cfg";
const char kGlobalConfig[] = "/mnt/ext1/system/config/global.cfg";

int readSetting(const char *path, const char *key, int deflt) {
  lpconfig *cfg = OpenConfig(path, 0);
  if (!cfg) return deflt;
  const int value = ReadInt(cfg, key, deflt);
  CloseConfigNoSave(cfg);
  return value;
}

}  // namespace

extern "C" int PkGetScreenModeInversion(void) {
  return readSetting(kGlobalConfig, "screen_inversion", 0) != 0 ? 1 : 0;
}

extern "C" int device_display_colormask(void) {
  return readSetting(kDeviceConfig, "display_colormask", 0);
}

extern "C" void getBrightnessContrastGammaAdjustParams(int *brightness, int *contrast, int *gamma) {
  lpconfig *cfg = OpenConfig(kGlobalConfig, 0);
  if (brightness) *brightness = cfg ? ReadInt(cfg, "display_brightness", 100) : 100;
  if (contrast) *contrast = cfg ? ReadInt(cfg, "display_contrast", 100) : 100;
  if (gamma) *gamma = cfg ? ReadInt(cfg, "display_gamma", 100) : 100;
  CloseConfigNoSave(cfg);
}
