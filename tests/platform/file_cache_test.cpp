// FileCache: what goes in comes out whole under its key, eviction by last use spares held
// files, and parallel use from several threads never shows half a file.
#include "file_cache.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "device_path.h"
#include "panelkit.h"

using lumenpress::platform::MapDevicePath;
using lumenpress::utilities::FileCache;

namespace {

const char kFolder[] = "/mnt/ext1/system/cache/test_cache";

std::string readAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// A file to put in, under the device's /tmp.
std::string source(const std::string &name, const std::string &content) {
  const std::string path = MapDevicePath("/tmp/" + name);
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

std::string cached(FileCache &cache, const std::string &key) {
  long long size = 0;
  const std::string path = cache.getFile(key, &size);
  return path.empty() ? std::string() : readAll(MapDevicePath(path));
}

std::vector<std::string> folderContents() {
  std::vector<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(MapDevicePath(kFolder)))
    names.push_back(entry.path().filename().string());
  return names;
}

}  // namespace

TEST(FileCache, KeepsACopyOrAMovedFileUnderItsKeyUntilRemoved) {
  FileCache cache(kFolder, "test_cache");
  long long size = -1;
  EXPECT_EQ(cache.getFile("http://store/1.jpg", &size), "");
  EXPECT_EQ(size, 0);

  const std::string copied = source("one", "first cover");
  ASSERT_TRUE(cache.addFile("http://store/1.jpg", copied, true));
  EXPECT_TRUE(std::filesystem::exists(copied));
  const std::string path = cache.getFile("http://store/1.jpg", &size);
  EXPECT_EQ(path.rfind(std::string(kFolder) + "/", 0), 0u) << "a device path: " << path;
  EXPECT_EQ(size, 11);
  EXPECT_EQ(readAll(MapDevicePath(path)), "first cover");

  const std::string moved = source("two", "second");
  ASSERT_TRUE(cache.addFile("http://store/1.jpg", moved, false));
  EXPECT_FALSE(std::filesystem::exists(moved));
  EXPECT_EQ(cached(cache, "http://store/1.jpg"), "second");
  EXPECT_EQ(cached(cache, "http://store/2.jpg"), "");
  EXPECT_EQ(cache.addFile("http://store/3.jpg", "/tmp/no-such-file", true), nullptr);
  EXPECT_EQ(folderContents().size(), 1u) << "no temporary file stays behind";

  FileCache restarted(kFolder, "test_cache");
  EXPECT_EQ(cached(restarted, "http://store/1.jpg"), "second");
  restarted.removeFile("http://store/1.jpg");
  restarted.removeFile("http://store/unknown.jpg");
  EXPECT_EQ(cache.getFile("http://store/1.jpg", &size), "");
}

TEST(FileCache, EvictsTheLeastRecentlyUsedFileButNeverAHeldOne) {
  lpconfig *cfg = OpenConfig("/coreapp/config/device.cfg", 1);
  WriteInt(cfg, "file_cache_limit_kb", 2);
  ASSERT_EQ(CloseConfig(cfg), 0);
  FileCache cache(kFolder, "test_cache");
  const std::string kilobyte(1000, 'x');
  auto held = cache.addFile("a", source("a", kilobyte), true);
  cache.addFile("b", source("b", kilobyte), true);
  cache.addFile("c", source("c", kilobyte), true);
  EXPECT_EQ(cached(cache, "b"), "") << "a is older but held";
  EXPECT_EQ(cached(cache, "a"), kilobyte);
  EXPECT_EQ(cached(cache, "c"), kilobyte);

  held.reset();
  EXPECT_EQ(cached(cache, "a"), kilobyte);
  cache.addFile("d", source("d", kilobyte), true);
  EXPECT_EQ(cached(cache, "c"), "") << "a was used after c";
  EXPECT_EQ(cached(cache, "a"), kilobyte);
  EXPECT_EQ(cached(cache, "d"), kilobyte);
}

// Each file tells its own length and is one letter throughout, so a reader sees whether it is whole.
TEST(FileCache, BearsParallelUseWithoutEverShowingHalfAFile) {
  FileCache cache(kFolder, "test_cache");
  constexpr int kThreads = 6;
  constexpr int kRounds = 40;
  std::atomic<int> broken{0};
  std::atomic<int> hits{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) {
        const std::string key = "http://store/cover/" + std::to_string(round % 5);
        const int length = 2000 + 97 * t + round;
        const std::string name = "parallel-" + std::to_string(t) + "-" + std::to_string(round);
        const std::string path = source(name, std::to_string(length) + "\n" + std::string(length, 'a' + t));
        cache.addFile(key, path, round % 2 == 0);
        std::remove(path.c_str());
        const std::string text = cached(cache, key);
        if (!text.empty()) {
          ++hits;
          const std::size_t end = text.find('\n');
          const std::string body = end == std::string::npos ? "" : text.substr(end + 1);
          if (end == std::string::npos || std::to_string(body.size()) != text.substr(0, end) ||
              body.find_first_not_of(body[0]) != std::string::npos)
            ++broken;
        }
        if (round % 7 == 3) cache.removeFile(key);
      }
    });
  }
  for (auto &thread : threads) thread.join();
  EXPECT_EQ(broken, 0);
  EXPECT_GT(hits, 0);
  for (const std::string &name : folderContents()) EXPECT_EQ(name.size(), 40u) << "left behind: " << name;
}
