#include "proxy_settings.h"

#include <cstdlib>
#include <initializer_list>

namespace lumenpress::platform {

ProxySettings::ProxySettings() {
  for (const char *name : {"https_proxy", "HTTPS_PROXY", "http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"}) {
    const char *value = std::getenv(name);
    if (value && *value) {
      proxy_ = value;
      return;
    }
  }
}

}  // namespace lumenpress::platform
