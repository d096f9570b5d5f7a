// Where the device's file system lies. On the device both are the identity;
// a PC keeps the device's tree under one root folder.
#ifndef LUMENPRESS_DEVICE_PATH_H
#define LUMENPRESS_DEVICE_PATH_H

#include <string>

namespace lumenpress::platform {

// The folder that holds the device's tree, created and filled on first use.
std::string DeviceRoot();

// Maps an absolute device path (/mnt/..., /coreapp/..., /tmp/...) to where it lies.
// Other paths, and paths already under the root, come back unchanged.
std::string MapDevicePath(const std::string &device_path);

}  // namespace lumenpress::platform

#endif
