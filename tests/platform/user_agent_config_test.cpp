#include "user_agent_config.h"

#include <gtest/gtest.h>

#include <string>

#include "panelkit.h"

using lumenpress::utilities::UserAgentConfig;

namespace {

void writeConfig(const char *path, const char *key, const char *value) {
  lpconfig *cfg = OpenConfig(path, 1);
  ASSERT_NE(cfg, nullptr) << path;
  WriteString(cfg, key, value);
  ASSERT_EQ(CloseConfig(cfg), 0) << path;
}

void expectHeaderSafe(const std::string &agent) {
  ASSERT_FALSE(agent.empty());
  EXPECT_NE(agent.front(), ' ') << agent;
  EXPECT_NE(agent.back(), ' ') << agent;
  for (unsigned char c : agent) EXPECT_TRUE(c >= 0x20 && c != 0x7f) << "byte " << int(c) << " in " << agent;
}

}  // namespace

TEST(UserAgentConfig, NamesDeviceAndVersionsOnOneHeaderSafeLine) {
  writeConfig("/coreapp/config/device.cfg", "model", "Reader\n740-2\t\x01\x7f");
  const std::string agent = UserAgentConfig("5.15.8\r\nX-Injected: 1", "73.16").userAgentForHost("");
  expectHeaderSafe(agent);
  EXPECT_NE(agent.find("Reader 740-2"), std::string::npos) << agent;
  EXPECT_NE(agent.find(GetSoftwareVersion()), std::string::npos) << agent;
  EXPECT_NE(agent.find("QtWebEngine/73.16"), std::string::npos) << agent;
  EXPECT_NE(agent.find("Qt/5.15.8 "), std::string::npos) << agent;
  EXPECT_EQ(agent.rfind("Mozilla/5.0 (Linux; ", 0), 0u) << agent;
}

TEST(UserAgentConfig, HostsMayHaveAgentsOfTheirOwn) {
  const UserAgentConfig config("5.15.8", "73.16");
  const std::string own = config.userAgentForHost("");
  EXPECT_EQ(config.userAgentForHost("books.example"), own) << "without an override file";

  writeConfig("/coreapp/config/user_agent.cfg", "books.example", "Special/1 (Reader)");
  writeConfig("/coreapp/config/user_agent.cfg", "evil.example", "Bad/1\r\nX-Injected: 1");
  writeConfig("/coreapp/config/user_agent.cfg", "blank.example", "\n\t");
  EXPECT_EQ(config.userAgentForHost("books.example"), "Special/1 (Reader)");
  EXPECT_EQ(config.userAgentForHost("other.example"), own);
  EXPECT_EQ(config.userAgentForHost("blank.example"), own);
  EXPECT_EQ(config.userAgentForHost(""), own);
  const std::string evil = config.userAgentForHost("evil.example");
  expectHeaderSafe(evil);
  EXPECT_EQ(evil.rfind("Bad/1", 0), 0u) << evil;
}
