// lpdevice: looks at and steers the PC's stand-in device, as the device shell would.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "device_path.h"
#include "hwconfig.h"
#include "panelkit.h"

namespace {

int usage() {
  std::fprintf(stderr,
               "usage: lpdevice info             the device's identity, language and network\n"
               "       lpdevice path DEVICE_PATH where a device path lies on this PC\n"
               "       lpdevice network up|down  switch the device's network\n"
               "       lpdevice journal          the tasks, books and requests the programs started\n");
  return 2;
}

int info() {
  std::printf("device root:      %s\n", lumenpress::platform::DeviceRoot().c_str());
  std::printf("model:            %s\n", GetDeviceModel());
  std::printf("serial number:    %s\n", GetSerialNumber());
  std::printf("software version: %s\n", GetSoftwareVersion());
  std::printf("language:         %s\n", currentLang());
  std::printf("audio:            %s\n", _device_has_audio() ? "yes" : "no");
  std::printf("network:          %s\n", (QueryNetwork() & 0xf00) ? "connected" : "down");
  return 0;
}

int network(const std::string &state) {
  const std::string flag = lumenpress::platform::DeviceRoot() + "/host/network_down";
  if (state == "down") {
    std::ofstream(flag).put('\n');
  } else if (state == "up") {
    std::filesystem::remove(flag);
  } else {
    return usage();
  }
  std::printf("network: %s\n", (QueryNetwork() & 0xf00) ? "connected" : "down");
  return 0;
}

int journal() {
  std::ifstream in(lumenpress::platform::DeviceRoot() + "/host/task_journal.jsonl");
  std::cout << in.rdbuf();
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) return usage();
  const std::string command = argv[1];
  if (command == "info") return info();
  if (command == "path" && argc == 3) {
    std::printf("%s\n", lumenpress::platform::MapDevicePath(argv[2]).c_str());
    return 0;
  }
  if (command == "network" && argc == 3) return network(argv[2]);
  if (command == "journal") return journal();
  return usage();
}
