#include "user_agent_config.h"

#include <algorithm>

#include "panelkit.h"

namespace lumenpress::utilities {

namespace {

// The agent goes into a header line: control characters would break the request, and an
// override of nothing but them must not leave a blank agent.
std::string headerSafe(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, ' ');
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string overrideFor(const std::string &host) {
  lpconfig *cfg = OpenConfig("/coreapp/config/user_agent.cfg", 0);
  if (!cfg) return {};
  const std::string agent = ReadString(cfg, host.c_str(), "");
  CloseConfigNoSave(cfg);
  return agent;
}

}  // namespace

UserAgentConfig::UserAgentConfig(const std::string &qt_version, const std::string &engine_version)
    : default_agent_(headerSafe(std::string("Mozilla/5.0 (Linux; ") + GetDeviceModel() +
                                ") AppleWebKit/537.36 (KHTML, like Gecko) QtWebEngine/" + engine_version + " Qt/" +
                                qt_version + " Kiosk/2.0 Firmware/" + GetSoftwareVersion())) {}

std::string UserAgentConfig::userAgentForHost(const std::string &host) const {
  if (host.empty()) return default_agent_;
  const std::string agent = headerSafe(overrideFor(host));
  return agent.empty() ? default_agent_ : agent;
}

}  // namespace lumenpress::utilities
