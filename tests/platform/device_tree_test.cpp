#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "device_path.h"

using lumenpress::platform::DeviceRoot;
using lumenpress::platform::MapDevicePath;

namespace {

std::string readFile(const std::string &path) {
  std::ifstream in(path);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace

TEST(DeviceTree, MapsDevicePathsUnderTheRootOnly) {
  const std::string root = DeviceRoot();
  EXPECT_EQ(root, std::getenv("LUMENPRESS_DEVICE_ROOT"));
  EXPECT_EQ(MapDevicePath("/mnt/ext1/system/config/global.cfg"), root + "/mnt/ext1/system/config/global.cfg");
  EXPECT_EQ(MapDevicePath("/coreapp/bin/webpane.app"), root + "/coreapp/bin/webpane.app");
  EXPECT_EQ(MapDevicePath("/tmp/legal_lock"), root + "/tmp/legal_lock");
  EXPECT_EQ(MapDevicePath("/usr/share/fonts"), "/usr/share/fonts");
  EXPECT_EQ(MapDevicePath("relative/file"), "relative/file");
  EXPECT_EQ(MapDevicePath("/mnt"), "/mnt");
  // Mapping twice must not nest the root, since platform calls map what callers already mapped.
  const std::string mapped = MapDevicePath("/mnt/secure/device.cfg");
  EXPECT_EQ(MapDevicePath(mapped), mapped);
}

TEST(DeviceTree, ExistingFilesSurviveAndANewRootIsFilledOnItsOwn) {
  const std::string first = DeviceRoot();
  { std::ofstream(first + "/mnt/ext1/system/config/global.cfg") << "language=de\n"; }
  const std::string second = first + "-second";
  setenv("LUMENPRESS_DEVICE_ROOT", second.c_str(), 1);
  EXPECT_EQ(DeviceRoot(), second);
  EXPECT_EQ(readFile(second + "/mnt/ext1/system/config/global.cfg").rfind("language=en\n", 0), 0u);
  setenv("LUMENPRESS_DEVICE_ROOT", first.c_str(), 1);
  EXPECT_EQ(DeviceRoot(), first);
  EXPECT_EQ(readFile(first + "/mnt/ext1/system/config/global.cfg"), "language=de\n");
  std::filesystem::remove_all(second);
}
