#include <gtest/gtest.h>

#include "temp_device_root.h"

// Every test process runs against a fresh device root of its own.
int main(int argc, char **argv) {
  ::testing::InitGoogleTest(&argc, argv);
  lumenpress::testing::TempDeviceRoot root;
  return RUN_ALL_TESTS();
}
