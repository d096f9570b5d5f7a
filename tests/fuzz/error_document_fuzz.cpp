// Any bytes as the JSON document a store sends in place of a book.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "device_path.h"
#include "feed_provider.h"
#include "fuzz_device.h"

namespace {

const char kFile[] = "/mnt/ext1/Downloads/answer.epub";

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  lumenpress::testing::FuzzDevice::Prepare();
  std::filesystem::create_directories(lumenpress::platform::MapDevicePath("/mnt/ext1/Downloads"));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::ofstream(lumenpress::platform::MapDevicePath(kFile), std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char *>(data), static_cast<std::streamsize>(size));
  int code = -1;
  std::string message;
  FeedProvider::ParseErrorCode(kFile, code, message);
  return 0;
}
