#include <gtest/gtest.h>
#include <json/reader.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "device_path.h"
#include "panelkit.h"

using lumenpress::platform::DeviceRoot;

namespace {

std::vector<Json::Value> journal() {
  std::ifstream in(DeviceRoot() + "/host/task_journal.jsonl");
  std::vector<Json::Value> lines;
  Json::CharReaderBuilder builder;
  for (std::string line; std::getline(in, line);) {
    Json::Value value;
    std::string errors;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    EXPECT_TRUE(reader->parse(line.data(), line.data() + line.size(), &value, &errors)) << line;
    lines.push_back(value);
  }
  return lines;
}

// A stand-in that records its arguments, then stays until it is ended.
std::string installStandIn(const std::string &name) {
  const std::string path = DeviceRoot() + "/coreapp/bin/" + name;
  // The device tree links some programs to this build's stand-ins: replace the link, never write through it.
  std::filesystem::remove(path);
  std::ofstream(path) << "#!/bin/sh\necho \"$@\" >> \"$0.args\"\nexec sleep 30\n";
  chmod(path.c_str(), 0755);
  return path;
}

std::string waitForFile(const std::string &path) {
  for (int i = 0; i < 500; ++i) {
    std::ifstream in(path);
    std::string text((std::istreambuf_iterator<char>(in)), {});
    if (!text.empty()) return text;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return {};
}

void writeHostFile(const std::string &name, const std::string &text) {
  std::ofstream(DeviceRoot() + "/host/" + name) << text;
}

}  // namespace

TEST(TaskJournal, EachCallIsOneLineWithItsArguments) {
  const char *args[] = {"-f", "-r"};
  EXPECT_EQ(OpenTask("/coreapp/bin/fetch_unit_params.app", 2, args, 0), 0);
  SetTaskParameters(GetCurrentTask(), nullptr, "Store", GetResource("bookstore", nullptr), -1);
  const char scan[] = "-scan:/mnt/ext1/Downloads";
  EXPECT_EQ(SendRequestTo(2000, 84, scan, 4, 0, 2000), 0);
  EXPECT_EQ(OpenBook("/mnt/ext1/Downloads/a.epub", nullptr, 0), 0);

  const auto lines = journal();
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0]["call"], "OpenTask");
  EXPECT_EQ(lines[0]["argv"][1], "-r");
  EXPECT_EQ(lines[1]["call"], "SetTaskParameters");
  EXPECT_TRUE(lines[1]["name"].isNull());
  EXPECT_EQ(lines[1]["icon"], "bookstore");
  EXPECT_EQ(lines[2]["data_hex"], "2d736361") << "only the given size of the data";
  EXPECT_EQ(lines[3]["call"], "OpenBook");
  EXPECT_EQ(lines[3]["task"], 0) << "no reader stand-in: only journalled";
}

TEST(TaskJournal, LinesFromEightThreadsStayWhole) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([t] {
      const std::string arg(500, static_cast<char>('a' + t));
      const char *args[] = {arg.c_str()};
      for (int i = 0; i < 100; ++i) OpenTask("/coreapp/bin/none.app", 1, args, i);
    });
  }
  for (auto &thread : threads) thread.join();
  const auto lines = journal();
  ASSERT_EQ(lines.size(), 800u);
  for (const auto &line : lines) EXPECT_EQ(line["argv"][0].asString().size(), 500u);
}

TEST(TaskRegistry, StandInsGetTheirArgumentsAreFoundAndClose) {
  const std::string path = installStandIn("refresh_home_tiles.app");
  EXPECT_EQ(FindTaskByAppName("refresh_home_tiles.app"), -1);
  const char *args[] = {"-x", "two words"};
  EXPECT_EQ(OpenTask("/coreapp/bin/refresh_home_tiles.app", 2, args, 37), 0);
  EXPECT_EQ(waitForFile(path + ".args"), "-x two words\n");
  const int task = FindTaskByAppName("refresh_home_tiles.app");
  EXPECT_GT(task, 0);
  EXPECT_EQ(FindTaskByAppName("/coreapp/bin/refresh_home_tiles.app"), task);
  EXPECT_EQ(CloseTask(task, 0, 1), 0);
  EXPECT_EQ(FindTaskByAppName("refresh_home_tiles.app"), -1);
  EXPECT_EQ(CloseTask(task, 0, 1), -1) << "a task that has gone cannot be closed again";

  const std::string webpane = installStandIn("webpane.app");
  const char *argv[] = {"-a", "1", nullptr};
  const int pane = NewTask("/coreapp/bin/webpane.app", "webpane.app", argv, 0, 1);
  EXPECT_GT(pane, 0);
  EXPECT_EQ(waitForFile(webpane + ".args"), "-a 1\n");
  const std::string listen = installStandIn("listen.app");
  const char *book[] = {"-bookPath", "/mnt/ext1/a.mp3", "-bookTitle", "VGl0bGU="};
  EXPECT_EQ(OpenBook2("/coreapp/bin/listen.app", 4, book, 0), 0);
  EXPECT_EQ(waitForFile(listen + ".args"), "-bookPath /mnt/ext1/a.mp3 -bookTitle VGl0bGU=\n");
  CloseTask(pane, 0, 1);
  CloseTask(FindTaskByAppName("listen.app"), 0, 1);
}

TEST(HostFiles, TaskStackAndNetworkFollowThem) {
  EXPECT_EQ(IsTaskActive(), 1);
  writeHostFile("task_inactive", "");
  EXPECT_EQ(IsTaskActive(), 0);
  int task = -5, subtask = -5;
  EXPECT_EQ(GetPreviousTaskInStack(&task, &subtask), -1);
  EXPECT_EQ(task, 0);
  writeHostFile("previous_task", "12 3\n");
  EXPECT_EQ(GetPreviousTaskInStack(&task, &subtask), 0);
  EXPECT_EQ(subtask, 3);

  EXPECT_NE(QueryNetwork() & 0xf00, 0);
  EXPECT_EQ(NetConnect(nullptr), 0);
  writeHostFile("network_down", "");
  EXPECT_EQ(QueryNetwork() & 0xf00, 0);
  EXPECT_NE(NetConnect(nullptr), 0);
  EXPECT_NE(NetConnectSilent(nullptr), 0);
  std::remove((DeviceRoot() + "/host/network_down").c_str());
  EXPECT_NE(QueryNetwork() & 0xf00, 0);
}

TEST(DeviceLibrary, FontAndResourcesNeverNull) {
  ASSERT_NE(pk_get_default_font(5), nullptr);
  EXPECT_STRNE(pk_get_default_font(5), "");
  const lpbitmap *fallback = GetResource("bookstore", nullptr);
  EXPECT_EQ(GetResource("", fallback), fallback);
  EXPECT_EQ(GetResource("bookstore", nullptr), fallback) << "one record per name";
}
