// A device root of its own for one test process, removed when the process ends.
#ifndef LUMENPRESS_TESTS_TEMP_DEVICE_ROOT_H
#define LUMENPRESS_TESTS_TEMP_DEVICE_ROOT_H

#include <string>

namespace lumenpress::testing {

class TempDeviceRoot {
public:
  TempDeviceRoot();
  ~TempDeviceRoot();
  TempDeviceRoot(const TempDeviceRoot &) = delete;
  TempDeviceRoot &operator=(const TempDeviceRoot &) = delete;

  const std::string &path() const { return path_; }

private:
  std::string path_;
};

// Path of the test program's own executable folder, for helper programs built beside it.
std::string testBinaryDir();

}  // namespace lumenpress::testing

#endif
