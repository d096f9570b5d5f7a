// The panel's display settings: a new device's defaults, and a change in its configuration seen at once.
#include <gtest/gtest.h>

#include "panelkit.h"
#include "panelkit_draw.h"

namespace {

void writeSetting(const char *path, const char *key, int value) {
  lpconfig *cfg = OpenConfig(path, 1);
  WriteInt(cfg, key, value);
  ASSERT_EQ(CloseConfig(cfg), 0);
}

}  // namespace

TEST(DisplaySettings, ANewDeviceHasANeutralGreyPanelAndChangesShowAtOnce) {
  int brightness = 0;
  int contrast = 0;
  int gamma = 0;
  getBrightnessContrastGammaAdjustParams(&brightness, &contrast, &gamma);
  EXPECT_EQ(brightness, 100);
  EXPECT_EQ(contrast, 100);
  EXPECT_EQ(gamma, 100);
  EXPECT_EQ(device_display_colormask(), 0);
  EXPECT_EQ(PkGetScreenModeInversion(), 0);

  writeSetting("/coreapp/config/device.cfg", "display_colormask", 0xfff);
  writeSetting("/mnt/ext1/system/config/global.cfg", "screen_inversion", 1);
  writeSetting("/mnt/ext1/system/config/global.cfg", "display_gamma", 140);
  getBrightnessContrastGammaAdjustParams(&brightness, &contrast, &gamma);
  EXPECT_EQ(gamma, 140);
  EXPECT_EQ(brightness, 100);
  EXPECT_EQ(device_display_colormask(), 0xfff);
  EXPECT_EQ(PkGetScreenModeInversion(), 1);
  getBrightnessContrastGammaAdjustParams(nullptr, nullptr, nullptr);
}
