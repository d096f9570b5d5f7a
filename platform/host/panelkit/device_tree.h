// The device's file system on a PC: its root folder and what a new device holds.
#ifndef LUMENPRESS_HOST_DEVICE_TREE_H
#define LUMENPRESS_HOST_DEVICE_TREE_H

#include <mutex>
#include <string>

namespace lumenpress::platform {

class DeviceTree {
public:
  static DeviceTree &instance();

  // The root for the current environment, filled on its first use in this process.
  std::string root();
  std::string map(const std::string &device_path);

  // Host-only files (journals, switches, logs) live under <root>/host.
  std::string hostPath(const std::string &name);

private:
  DeviceTree() = default;
  static std::string configuredRoot();
  void fill(const std::string &root);
  void installFiles(const char *source, const char *extension, const std::string &folder);
  static void linkProgram(const char *program, const std::string &link);

  std::mutex mutex_;
  std::string filled_root_;
};

}  // namespace lumenpress::platform

#endif
