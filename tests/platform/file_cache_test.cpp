// FileCache: files kept whole under their keys, eviction by last use that spares held files,
// and parallel use from several threads that never shows half a file.
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

// A file to put in, under the device's /tmp.
std::string source(const std::string &name, const std::string &content) {
  const std::string path = MapDevicePath("/tmp/" + name);
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

std::string cached(FileCache &cache, const std::string &key) {
  long long size = 0;
  std::ifstream in(MapDevicePath(cache.getFile(key, &size)), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace

TEST(FileCache, KeepsFilesUnderTheirKeysAndEvictsTheLeastRecentlyUsedButNeverAHeldOne) {
  lpconfig *cfg = OpenConfig("/coreapp/config/device.cfg", 1);
  WriteInt(cfg, "file_cache_limit_kb", 2);
  ASSERT_EQ(CloseConfig(cfg), 0);
  FileCache cache(kFolder, "test_cache");
  const std::string kilobyte(1000, 'x');
  const std::string copied = source("a", kilobyte);
  auto held = cache.addFile("a", copied, true);
  const std::string moved = source("b", kilobyte);
  cache.addFile("b", moved, false);
  EXPECT_TRUE(std::filesystem::exists(copied));
  EXPECT_FALSE(std::filesystem::exists(moved));
  long long size = 0;
  EXPECT_EQ(cache.getFile("b", &size).rfind(std::string(kFolder) + "/", 0), 0u) << "a device path";
  EXPECT_EQ(size, 1000);
  EXPECT_EQ(cache.addFile("z", "/tmp/no-such-file", true), nullptr);

  cache.addFile("c", source("c", kilobyte), true);
  EXPECT_EQ(cached(cache, "b"), "") << "a is older but held";
  EXPECT_EQ(cached(cache, "a") + cached(cache, "c"), kilobyte + kilobyte);
  held.reset();
  cached(cache, "a");
  FileCache restarted(kFolder, "test_cache");
  restarted.addFile("d", source("d", kilobyte), true);
  EXPECT_EQ(cached(restarted, "c"), "") << "a was used after c";
  EXPECT_EQ(cached(restarted, "a") + cached(restarted, "d"), kilobyte + kilobyte);
  restarted.removeFile("a");
  EXPECT_EQ(cache.getFile("a", &size), "");
}

// Each file gives its own length and is one letter throughout, so a reader sees whether it is whole.
TEST(FileCache, BearsParallelUseWithoutEverShowingHalfAFile) {
  FileCache cache(kFolder, "test_cache");
  std::atomic<int> broken{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 6; ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < 40; ++round) {
        const std::string key = "http://store/cover/" + std::to_string(round % 5);
        const int length = 2000 + 97 * t + round;
        const std::string name = "parallel-" + std::to_string(t) + "-" + std::to_string(round);
        const std::string path = source(name, std::to_string(length) + "\n" + std::string(length, 'a' + t));
        cache.addFile(key, path, round % 2 == 0);
        std::remove(path.c_str());
        const std::string text = cached(cache, key);
        const std::size_t end = text.find('\n');
        if (!text.empty() &&
            (end == std::string::npos || std::to_string(text.size() - end - 1) != text.substr(0, end) ||
             text.find_first_not_of(text.back(), end + 1) != std::string::npos))
          ++broken;
        if (round % 7 == 3) cache.removeFile(key);
      }
    });
  }
  for (auto &thread : threads) thread.join();
  EXPECT_EQ(broken, 0);
  for (const auto &entry : std::filesystem::directory_iterator(MapDevicePath(kFolder)))
    EXPECT_EQ(entry.path().filename().string().size(), 40u) << "no temporary file stays behind";
}
