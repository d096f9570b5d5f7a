#include "disk_cache.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "device_path.h"

using lumenpress::opds::DiskCache;
namespace fs = std::filesystem;

namespace {

std::vector<fs::path> temporaries(const std::string &folder) {
  std::vector<fs::path> found;
  for (const auto &entry : fs::directory_iterator(folder)) {
    if (entry.path().filename().string().find(".tmp.") != std::string::npos) found.push_back(entry.path());
  }
  return found;
}

}  // namespace

TEST(DiskCache, FeedsWhoseStoringWasKilledAreSweptWhenAProcessFirstUsesTheFolder) {
  const std::string folder = lumenpress::platform::MapDevicePath("/mnt/ext1/system/cache/bookstore_feeds_cache");
  const std::string url = "http://store.test/opds/home";
  fs::create_directories(folder);
  const pid_t writer = fork();
  if (writer == 0) {
    DiskCache cache;
    cache.setFolder(folder);
    for (;;) cache.store(url, DiskCache::Record{std::string(20 << 20, 'f'), "\"etag\"", ""});
  }
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (temporaries(folder).empty() && std::chrono::steady_clock::now() < deadline) {
  }
  kill(writer, SIGKILL);
  waitpid(writer, nullptr, 0);
  const auto left = temporaries(folder);
  ASSERT_EQ(left.size(), 1u);
  fs::last_write_time(left[0], fs::file_time_type::clock::now() - std::chrono::hours(1));

  DiskCache cache;
  cache.setFolder(folder);
  EXPECT_TRUE(temporaries(folder).empty());
}
