// Any bytes as a configuration file: read, written to, saved and read again, the second reading must find
// every key in its place with its value, plain or secret.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "device_path.h"
#include "fuzz_device.h"
#include "panelkit.h"

namespace {

const char kFile[] = "/mnt/ext1/system/config/fuzz.cfg";

// Keys in order, each with its clear value.
using Contents = std::vector<std::pair<std::string, std::string>>;

Contents Read(lpconfig *cfg) {
  Contents contents;
  for (int i = 0; i < GetConfigKeyCount(cfg); ++i) {
    const char *key = GetConfigKey(cfg, i);
    contents.emplace_back(key, ReadSecret(cfg, key, ""));
  }
  return contents;
}

// Every value again under a key of its own, the plain ones as secrets and the secrets as plain text, and the
// input's first line as a key and value of its own, which the file may refuse.
void WriteMore(lpconfig *cfg, const std::string &input) {
  const Contents contents = Read(cfg);
  for (size_t i = 0; i < contents.size(); ++i) {
    const auto &[key, value] = contents[i];
    const bool secret = std::string(ReadString(cfg, key.c_str(), "")) != value;
    const std::string copy = "copy" + std::to_string(i);
    secret ? WriteString(cfg, copy.c_str(), value.c_str()) : WriteSecret(cfg, copy.c_str(), value.c_str());
  }
  const std::string line = input.substr(0, input.find('\n'));
  WriteString(cfg, line.c_str(), line.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  lumenpress::testing::FuzzDevice::Prepare();
  std::filesystem::create_directories(lumenpress::platform::MapDevicePath("/mnt/ext1/system/config"));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string input(reinterpret_cast<const char *>(data), size);
  if (!(std::ofstream(lumenpress::platform::MapDevicePath(kFile), std::ios::binary | std::ios::trunc) << input)) {
    std::abort();
  }
  lpconfig *cfg = OpenConfig(kFile, 1);
  if (!cfg) std::abort();
  WriteMore(cfg, input);
  const Contents written = Read(cfg);
  if (CloseConfig(cfg) != 0) std::abort();
  lpconfig *again = OpenConfig(kFile, 0);
  if (!again || Read(again) != written) std::abort();
  CloseConfig(again);
  return 0;
}
