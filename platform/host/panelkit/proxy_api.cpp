// The C face of the proxy setting.
#include <cstdlib>
#include <cstring>

#include "panelkit.h"
#include "proxy_settings.h"

extern "C" char *get_proxy(void) {
  const lumenpress::platform::ProxySettings settings;
  return settings.configured() ? strdup(settings.proxy().c_str()) : nullptr;
}

extern "C" void clean_proxy_object(char *proxy) {
  std::free(proxy);
}
