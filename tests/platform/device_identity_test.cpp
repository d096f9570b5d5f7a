#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "device_path.h"
#include "hwconfig.h"
#include "panelkit.h"

using lumenpress::platform::DeviceRoot;
using lumenpress::platform::MapDevicePath;

namespace {

void writeFile(const std::string &device_path, const std::string &content) {
  std::ofstream(MapDevicePath(device_path), std::ios::binary) << content;
}

std::string readFile(const std::string &device_path) {
  std::ifstream in(MapDevicePath(device_path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// The identity is read once per process, so each case reads it in a child of its
// own, on a fresh device root; the child's exit code is the number of failed checks.
int inFreshDevice(const std::string &name, const std::function<int()> &body) {
  const pid_t child = fork();
  if (child == 0) {
    setenv("LUMENPRESS_DEVICE_ROOT", (DeviceRoot() + "/" + name).c_str(), 1);
    DeviceRoot();
    _exit(body());
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}

int differs(const char *actual, const std::string &expected) {
  if (actual && expected == actual) return 0;
  std::fprintf(stderr, "got \"%s\", expected \"%s\"\n", actual ? actual : "<null>", expected.c_str());
  return 1;
}

}  // namespace

TEST(DeviceIdentity, SeededChangedOrUnreadableFilesAreReadOnceAndTextsStayValid) {
  EXPECT_EQ(inFreshDevice("seeded",
                          [] {
                            const std::string secure = readFile("/mnt/secure/device.cfg");
                            const std::string serial = secure.substr(7, secure.find('\n') - 7);
                            return differs(GetDeviceModel(), "LumenPress Reader 740-2") +
                                   differs(GetSoftwareVersion(), "U740.6.10.1508") +
                                   differs(GetSerialNumber(), serial) +
                                   (std::strncmp(GetSerialNumber(), "LP740", 5) != 0) + (GetCustomizedPartner() != 0);
                          }),
            0);
  EXPECT_EQ(inFreshDevice("changed",
                          [] {
                            writeFile("/coreapp/config/device.cfg",
                                      "model=Reader 1040\nsoftware_version=U1040.7.0\ncustomized_partner=3\n");
                            writeFile("/mnt/secure/device.cfg", "serial=SN-XYZ\n");
                            const char *model = GetDeviceModel();
                            int failures = differs(model, "Reader 1040") + differs(GetSerialNumber(), "SN-XYZ") +
                                           differs(GetSoftwareVersion(), "U1040.7.0") + (GetCustomizedPartner() != 3);
                            writeFile("/coreapp/config/device.cfg", "model=Another\n");
                            return failures + (GetDeviceModel() != model) + differs(model, "Reader 1040");
                          }),
            0);
  EXPECT_EQ(inFreshDevice("unreadable",
                          [] {
                            std::filesystem::remove(MapDevicePath("/coreapp/config/device.cfg"));
                            std::filesystem::remove(MapDevicePath("/mnt/secure/device.cfg"));
                            return differs(GetDeviceModel(), "") + differs(GetSerialNumber(), "") +
                                   differs(GetSoftwareVersion(), "") + (GetCustomizedPartner() != 0);
                          }),
            0);
}

TEST(DeviceIdentity, AudioFollowsTheDeviceConfiguration) {
  EXPECT_EQ(_device_has_audio(), 1);
  writeFile("/coreapp/config/device.cfg", "model=Reader\nhas_audio=0\n");
  EXPECT_EQ(_device_has_audio(), 0);
  writeFile("/coreapp/config/device.cfg", "model=Reader\nhas_audio= 5\n");
  EXPECT_EQ(_device_has_audio(), 1);
  writeFile("/coreapp/config/device.cfg", "model=Reader\nhas_audio=0\nhas_audio=1\n");
  EXPECT_EQ(_device_has_audio(), 1);
}
