// The display adjustment table: neutral at 100 percent, the device's curve elsewhere.
#include "display_adjustment.h"

#include <gtest/gtest.h>

TEST(DisplayAdjustment, NeutralKeepsEveryLevelAndEachSettingBendsTheCurve) {
  const auto neutral = displayAdjustmentTable(100, 100, 100);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(neutral[i], i);
  EXPECT_EQ(displayAdjustmentTable(50, 100, 100)[200], 72);
  EXPECT_EQ(displayAdjustmentTable(120, 100, 100)[0], 50);
  EXPECT_EQ(displayAdjustmentTable(100, 50, 100)[0], 63);
  EXPECT_EQ(displayAdjustmentTable(100, 50, 100)[255], 191);
  EXPECT_EQ(displayAdjustmentTable(100, 100, 200)[128], 64);
  EXPECT_EQ(displayAdjustmentTable(100, 100, -100)[0], 255) << "zero to a negative power is infinite";
}
