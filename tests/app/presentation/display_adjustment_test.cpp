// The display adjustment table: neutral at 100 percent, the device's own curve elsewhere,
// and no way out of a byte for settings a file may hold.
#include "display_adjustment.h"

#include <gtest/gtest.h>

TEST(DisplayAdjustment, NeutralKeepsEveryLevelAndEachSettingBendsTheCurveAsTheDeviceDoes) {
  const auto neutral = displayAdjustmentTable(100, 100, 100);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(neutral[i], i);

  const auto darker = displayAdjustmentTable(50, 100, 100);
  EXPECT_EQ(darker[0], 0);
  EXPECT_EQ(darker[200], 72);
  EXPECT_EQ(darker[255], 127);
  const auto flatter = displayAdjustmentTable(100, 50, 100);
  EXPECT_EQ(flatter[0], 63);
  EXPECT_EQ(flatter[127], 127);
  EXPECT_EQ(flatter[255], 191);
  const auto gamma = displayAdjustmentTable(100, 100, 200);
  EXPECT_EQ(gamma[128], 64);
  EXPECT_EQ(gamma[255], 255);
  EXPECT_EQ(displayAdjustmentTable(120, 100, 100)[0], 50);
}

TEST(DisplayAdjustment, SettingsFarOutOfRangeEndInBlackOrWhite) {
  EXPECT_EQ(displayAdjustmentTable(100000, 100, 100)[0], 255);
  EXPECT_EQ(displayAdjustmentTable(-100000, 100, 100)[255], 0);
  EXPECT_EQ(displayAdjustmentTable(100, 100000, 100)[100], 0);
  EXPECT_EQ(displayAdjustmentTable(100, 100, -100)[0], 255) << "zero to a negative power is infinite";
}
