#include "fuzz_device.h"

#include <cstdlib>

#include "temp_device_root.h"

namespace lumenpress::testing {

void FuzzDevice::Prepare() {
  setenv("LUMENPRESS_LOG_LEVEL", "0", 0);
  static TempDeviceRoot root;
}

}  // namespace lumenpress::testing
