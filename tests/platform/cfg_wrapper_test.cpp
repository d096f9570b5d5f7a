#include "cfg_wrapper.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>

#include "device_path.h"

using lumenpress::platform::MapDevicePath;
using lumenpress::utilities::CfgSecret;
using lumenpress::utilities::CfgWrapper;

namespace {

const char kPath[] = "/mnt/ext1/system/config/bookstore.cfg";

std::string readFile(const std::string &device_path) {
  std::ifstream in(MapDevicePath(device_path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

void writeFile(const std::string &device_path, const std::string &content) {
  std::ofstream(MapDevicePath(device_path), std::ios::binary) << content;
}

}  // namespace

// Each type reaches its own C call, the C calls take the wrapper as their handle, and keys keep
// the file's order.
TEST(CfgWrapper, TypesKeysAndTheCFunctionsShareOneHandle) {
  writeFile(kPath, "email=a@b.test\ntessel_login=old\ndisplay_type=grid\n");
  {
    CfgWrapper cfg(kPath, 1);
    cfg.remove("tessel_login");
    cfg.remove("never_there");
    cfg.write<std::string>("email", "reader@example.test");
    cfg.write<int>("download_mode", 2);
    cfg.write<CfgSecret>("access_token", "tok=en\nwith lines");
    WriteString(cfg, "display_type", "list");
    EXPECT_EQ(cfg.getKeys(), std::vector<std::string>({"email", "display_type", "download_mode", "access_token"}));
    ASSERT_TRUE(cfg.save());
    EXPECT_TRUE(cfg.isOpen());
    ASSERT_TRUE(cfg.saveAndClose());
    EXPECT_FALSE(cfg.isOpen());
  }
  EXPECT_EQ(readFile(kPath).find("with lines"), std::string::npos);
  const CfgWrapper cfg(kPath, 0);
  EXPECT_EQ(cfg.read<std::string>("email", ""), "reader@example.test");
  EXPECT_EQ(cfg.read<int>("download_mode", 1), 2);
  EXPECT_EQ(cfg.read<CfgSecret>("access_token", ""), "tok=en\nwith lines");
  EXPECT_NE(cfg.read<std::string>("access_token", ""), "tok=en\nwith lines");
  EXPECT_STREQ(ReadString(cfg, "display_type", "grid"), "list");
  EXPECT_EQ(cfg.read<std::string>("missing", "grid"), "grid");
  EXPECT_EQ(cfg.read<int>("missing", 1), 1);
  EXPECT_EQ(cfg.read<CfgSecret>("missing", "none"), "none");
}

TEST(CfgWrapper, UnsavedClosedOrReadOnlyChangesNeverReachTheFile) {
  writeFile(kPath, "email=a@b.test\n");
  {
    CfgWrapper cfg(kPath, 1);
    cfg.write<std::string>("email", "changed@b.test");
    cfg.closeNoSave();
    EXPECT_FALSE(cfg.isOpen());
    EXPECT_EQ(cfg.read<std::string>("email", "closed"), "closed");
    EXPECT_FALSE(cfg.save());
    CfgWrapper dropped(kPath, 1);
    dropped.write<std::string>("email", "destructor@b.test");
  }
  CfgWrapper reader(kPath, 0);
  reader.write<std::string>("email", "x@b.test");
  reader.remove("email");
  EXPECT_EQ(reader.read<std::string>("email", ""), "a@b.test");
  EXPECT_FALSE(reader.save());
  EXPECT_EQ(readFile(kPath), "email=a@b.test\n");

  CfgWrapper missing("/mnt/ext1/system/config/lpcloud.cfg", 0);
  EXPECT_FALSE(missing.isOpen());
  EXPECT_TRUE(missing.getKeys().empty());
  EXPECT_FALSE(missing.saveAndClose());
}

TEST(CfgWrapper, MovingHandsTheHandleOver) {
  writeFile(kPath, "email=a@b.test\n");
  CfgWrapper first(kPath, 1);
  first.write<std::string>("email", "moved@b.test");
  CfgWrapper second(std::move(first));
  EXPECT_FALSE(first.isOpen());
  EXPECT_EQ(second.read<std::string>("email", ""), "moved@b.test");

  CfgWrapper third("/mnt/ext1/system/config/other.cfg", 1);
  third.write<std::string>("k", "dropped");
  third = std::move(second);
  EXPECT_EQ(third.read<std::string>("email", ""), "moved@b.test");
  EXPECT_TRUE(third.saveAndClose());
  EXPECT_EQ(readFile(kPath), "email=moved@b.test\n");
  EXPECT_EQ(readFile("/mnt/ext1/system/config/other.cfg"), "");
}
