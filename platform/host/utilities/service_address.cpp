#include "service_address.h"

#include "device_tree.h"
#include "panelkit.h"

namespace lumenpress::utilities {

namespace {

std::string configured(const char *key, const std::string &fallback) {
  std::string address = fallback;
  if (lpconfig *config = OpenConfig(platform::DeviceTree::instance().hostPath(ServiceAddress::kFile).c_str(), 0)) {
    address = ReadString(config, key, address.c_str());
    CloseConfigNoSave(config);
  }
  return address;
}

}  // namespace

std::string ServiceAddress::account() {
  std::string address = configured(kAccountKey, LP_ACCOUNT_SERVICE_URL);
  if (address.empty() || address.back() != '/') address += '/';
  return address;
}

// The two endpoints share a host; "legal_service" names the origin that stands for it.
std::string ServiceAddress::resolve(const std::string &url) {
  for (const std::string endpoint : {LP_LEGAL_SERVICE_URL, LP_LEGAL_TEST_SERVICE_URL}) {
    if (url.compare(0, endpoint.size(), endpoint) != 0) continue;
    const size_t host_end = endpoint.find('/', endpoint.find("://") + 3);
    const std::string origin = configured(kLegalKey, endpoint.substr(0, host_end));
    return origin + url.substr(host_end);
  }
  return url;
}

}  // namespace lumenpress::utilities
