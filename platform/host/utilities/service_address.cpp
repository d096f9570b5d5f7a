#include "service_address.h"

#include "device_tree.h"
#include "panelkit.h"

namespace lumenpress::utilities {

std::string ServiceAddress::account() {
  std::string address = LP_ACCOUNT_SERVICE_URL;
  if (lpconfig *config = OpenConfig(platform::DeviceTree::instance().hostPath(kFile).c_str(), 0)) {
    address = ReadString(config, kAccountKey, address.c_str());
    CloseConfigNoSave(config);
  }
  if (address.empty() || address.back() != '/') address += '/';
  return address;
}

}  // namespace lumenpress::utilities
