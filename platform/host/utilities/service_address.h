// Where the host finds the services a device reaches on its maker's servers: built in, or set
// for a run in "services.cfg" of the host's folder under the device root (tests point them at
// a storefront of their own there).
#ifndef LUMENPRESS_HOST_SERVICE_ADDRESS_H
#define LUMENPRESS_HOST_SERVICE_ADDRESS_H

#include <string>

namespace lumenpress::utilities {

class ServiceAddress {
public:
  static constexpr const char *kFile = "services.cfg";
  static constexpr const char *kAccountKey = "account_service";
  static constexpr const char *kLegalKey = "legal_service";

  // The account service's base, ending in a slash.
  static std::string account();
  // Where a request to one of the maker's services goes on this host: the legal service's
  // built-in endpoints lead to the storefront "services.cfg" names, as a device's name
  // resolution would; any other URL is left as it is.
  static std::string resolve(const std::string &url);
};

}  // namespace lumenpress::utilities

#endif
