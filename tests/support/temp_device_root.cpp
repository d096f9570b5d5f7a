#include "temp_device_root.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace lumenpress::testing {

TempDeviceRoot::TempDeviceRoot() {
  std::string pattern = std::filesystem::temp_directory_path().string() + "/lp-device-XXXXXX";
  if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
  setenv("LUMENPRESS_DEVICE_ROOT", path_.c_str(), 1);
}

TempDeviceRoot::~TempDeviceRoot() {
  if (std::getenv("LP_KEEP_TEST_ROOT")) return;
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

std::string testBinaryDir() {
  return std::filesystem::canonical("/proc/self/exe").parent_path().string();
}

}  // namespace lumenpress::testing
