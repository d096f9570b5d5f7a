#include "temp_device_root.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace lumenpress::testing {

TempDeviceRoot::TempDeviceRoot() {
  std::string pattern = std::filesystem::temp_directory_path().string() + "/lp-device-XXXXXX";
  if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
  setenv("LUMENPRESS_DEVICE_ROOT", path_.c_str(), 1);
  // The built-in service addresses are those of a storefront a developer may be running; a test
  // reaches nothing until it names its own.
  std::filesystem::create_directories(path_ + "/host");
  std::ofstream(path_ + "/host/services.cfg")
      << "account_service=http://127.0.0.1:1/account/\nlegal_service=http://127.0.0.1:1\n";
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
