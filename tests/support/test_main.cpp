#include <gtest/gtest.h>

#include <cstdlib>

#include "temp_device_root.h"

// Every test process runs against a fresh device root of its own.
int main(int argc, char **argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // Tests run with the platform's defaults, whatever the developer's shell has set.
  unsetenv("LUMENPRESS_LOG_LEVEL");
  lumenpress::testing::TempDeviceRoot root;
  return RUN_ALL_TESTS();
}
