// The device's proxy setting; a PC takes it from the usual environment variables.
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "panelkit.h"

extern "C" char *get_proxy(void) {
  for (const char *name : {"https_proxy", "HTTPS_PROXY", "http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"}) {
    const char *value = std::getenv(name);
    if (value && *value) return strdup(value);
  }
  return nullptr;
}

extern "C" void clean_proxy_object(char *proxy) {
  std::free(proxy);
}
