// The device's proxy setting; a PC takes it from the environment variables command-line tools read.
#ifndef LUMENPRESS_HOST_PROXY_SETTINGS_H
#define LUMENPRESS_HOST_PROXY_SETTINGS_H

#include <string>

namespace lumenpress::platform {

class ProxySettings {
public:
  // Reads the environment now: the https proxy first, since the store's traffic is https.
  ProxySettings();

  bool configured() const { return !proxy_.empty(); }
  // The proxy as libcurl takes it, such as "http://proxy:3128"; empty when there is none.
  const std::string &proxy() const { return proxy_; }

private:
  std::string proxy_;
};

}  // namespace lumenpress::platform

#endif
