#include "disk_cache.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "stale_file_sweeper.h"

namespace lumenpress::opds {

namespace {

// The first line holds the URL, so that a hash collision is caught on load.
const char kHeaderEnd[] = "\n--\n";

std::string hashName(const std::string &url) {
  uint64_t hash = 1469598103934665603ull;
  for (unsigned char c : url) hash = (hash ^ c) * 1099511628211ull;
  char name[32];
  std::snprintf(name, sizeof name, "%016llx.feed", static_cast<unsigned long long>(hash));
  return name;
}

std::string oneLine(const std::string &text) {
  return text.substr(0, text.find_first_of("\r\n"));
}

// Feeds whose writing a kill cut off are swept when a process first uses the folder.
platform::StaleFileSweeper &temporarySweeper() {
  static platform::StaleFileSweeper sweeper(R"([0-9a-f]{16}\.feed\.tmp\.([0-9]+)\.[0-9]+)");
  return sweeper;
}

}  // namespace

void DiskCache::setFolder(const std::string &folder) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    folder_ = folder;
  }
  if (folder.empty()) return;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  temporarySweeper().sweepOnce(folder);
}

std::string DiskCache::fileFor(const std::string &url) const {
  std::lock_guard<std::mutex> lock(mutex_);
  return folder_.empty() ? std::string() : folder_ + "/" + hashName(url);
}

bool DiskCache::load(const std::string &url, Record *record) const {
  const std::string path = fileFor(url);
  if (path.empty()) return false;
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  const std::string text((std::istreambuf_iterator<char>(in)), {});
  const auto end = text.find(kHeaderEnd);
  if (end == std::string::npos) return false;
  std::istringstream header(text.substr(0, end));
  std::string stored_url;
  std::getline(header, stored_url);
  if (stored_url != oneLine(url)) return false;
  std::getline(header, record->etag);
  std::getline(header, record->last_modified);
  record->body = text.substr(end + sizeof kHeaderEnd - 1);
  return true;
}

void DiskCache::store(const std::string &url, const Record &record) const {
  static std::atomic<unsigned> counter{0};
  const std::string path = fileFor(url);
  if (path.empty()) return;
  const std::string temp = path + ".tmp." + std::to_string(getpid()) + "." + std::to_string(counter++);
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    out << oneLine(url) << '\n'
        << oneLine(record.etag) << '\n'
        << oneLine(record.last_modified) << kHeaderEnd << record.body;
    if (!out.flush()) {
      std::remove(temp.c_str());
      return;
    }
  }
  if (std::rename(temp.c_str(), path.c_str()) != 0) std::remove(temp.c_str());
}

void DiskCache::remove(const std::string &url) const {
  const std::string path = fileFor(url);
  if (!path.empty()) std::remove(path.c_str());
}

}  // namespace lumenpress::opds
