// The User-Agent the device's network clients send.
#ifndef LUMENPRESS_USER_AGENT_CONFIG_H
#define LUMENPRESS_USER_AGENT_CONFIG_H

#include <string>

namespace lumenpress::utilities {

class UserAgentConfig {
public:
  UserAgentConfig(const std::string &qt_version, const std::string &engine_version);

  // The agent for a host: an override from /coreapp/config/user_agent.cfg, else the
  // device's own. An empty host gives the device's own.
  std::string userAgentForHost(const std::string &host) const;

private:
  std::string default_agent_;
};

}  // namespace lumenpress::utilities

#endif
