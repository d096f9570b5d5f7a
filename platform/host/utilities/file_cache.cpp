// One file per key in the cache's folder under the device root, named by a hash of the key.
// A file comes in under a temporary name and is renamed into place, so a crash never leaves
// half a file. Past a size cap (file_cache_limit_kb in the device configuration) the least
// recently used files go, except those a handle holds.
#include "file_cache.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "device_path.h"
#include "lp_log.h"
#include "panelkit.h"

namespace fs = std::filesystem;

namespace lumenpress::utilities {

namespace {

constexpr char kTempPrefix[] = ".incoming-";
constexpr int kDefaultLimitKb = 64 * 1024;
// A temporary file this old was left by a process that died while copying it in.
constexpr time_t kStaleTempSeconds = 3600;

std::string fileNameFor(const std::string &key) {
  const QByteArray digest = QCryptographicHash::hash(QByteArray::fromStdString(key), QCryptographicHash::Sha1);
  return digest.toHex().toStdString();
}

long long limitBytes() {
  lpconfig *cfg = OpenConfig("/coreapp/config/device.cfg", 0);
  const int kb = cfg ? ReadInt(cfg, "file_cache_limit_kb", kDefaultLimitKb) : kDefaultLimitKb;
  CloseConfigNoSave(cfg);
  return std::max(kb, 1) * 1024LL;
}

// -1 when there is no such file.
long long fileSize(const std::string &path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return -1;
  return info.st_size;
}

bool writeAll(int fd, const char *data, ssize_t length) {
  while (length > 0) {
    const ssize_t written = ::write(fd, data, length);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    data += written;
    length -= written;
  }
  return true;
}

bool copyInto(const std::string &source, int fd) {
  const int in = ::open(source.c_str(), O_RDONLY | O_CLOEXEC);
  if (in < 0) return false;
  char buffer[64 * 1024];
  bool ok = true;
  for (;;) {
    const ssize_t length = ::read(in, buffer, sizeof buffer);
    if (length < 0 && errno == EINTR) continue;
    if (length <= 0) {
      ok = length == 0;
      break;
    }
    if (!writeAll(fd, buffer, length)) {
      ok = false;
      break;
    }
  }
  ::close(in);
  return ok;
}

bool earlier(const timespec &a, const timespec &b) {
  return a.tv_sec < b.tv_sec || (a.tv_sec == b.tv_sec && a.tv_nsec < b.tv_nsec);
}

}  // namespace

struct FileCache::State {
  struct Entry {
    std::string file;
    timespec used;
    long long size;
  };

  std::mutex mutex;
  std::string folder;
  long long limit = 0;
  long long size = -1;  // until the folder has been counted
  timespec last_use{};
  std::map<std::string, int> held;

  void markUsed(const std::string &file);
  std::vector<Entry> scan();
  void evictOver(const std::string &keep, const std::string &cache_name);
};

class FileCache::Handle {
public:
  // Made under the state's lock.
  Handle(std::shared_ptr<State> state, std::string file) : state_(std::move(state)), file_(std::move(file)) {
    ++state_->held[file_];
  }
  ~Handle() {
    std::lock_guard<std::mutex> lock(state_->mutex);
    if (--state_->held[file_] == 0) state_->held.erase(file_);
  }
  Handle(const Handle &) = delete;
  Handle &operator=(const Handle &) = delete;

private:
  std::shared_ptr<State> state_;
  std::string file_;
};

// The modification time is the time of last use. A coarse clock would give several uses one
// time, so each use is stamped later than the one before.
void FileCache::State::markUsed(const std::string &file) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  if (!earlier(last_use, now)) {
    now = last_use;
    if (++now.tv_nsec == 1000000000L) {
      now.tv_nsec = 0;
      ++now.tv_sec;
    }
  }
  last_use = now;
  const timespec times[2] = {{0, UTIME_OMIT}, now};
  ::utimensat(AT_FDCWD, (folder + "/" + file).c_str(), times, 0);
}

// Counts the folder afresh, so files other processes or caches added or removed are seen.
std::vector<FileCache::State::Entry> FileCache::State::scan() {
  std::vector<Entry> entries;
  size = 0;
  std::error_code error;
  const time_t now = std::time(nullptr);
  for (const auto &item : fs::directory_iterator(folder, error)) {
    const std::string name = item.path().filename().string();
    struct stat info {};
    if (::stat(item.path().c_str(), &info) != 0 || !S_ISREG(info.st_mode)) continue;
    if (name.rfind(kTempPrefix, 0) == 0) {
      if (now - info.st_mtime > kStaleTempSeconds) ::unlink(item.path().c_str());
      continue;
    }
    entries.push_back({name, info.st_mtim, info.st_size});
    size += info.st_size;
  }
  return entries;
}

void FileCache::State::evictOver(const std::string &keep, const std::string &cache_name) {
  std::vector<Entry> entries = scan();
  if (size <= limit) return;
  std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) { return earlier(a.used, b.used); });
  for (const Entry &entry : entries) {
    if (size <= limit) break;
    if (entry.file == keep || held.count(entry.file) != 0) continue;
    if (::unlink((folder + "/" + entry.file).c_str()) != 0) continue;
    size -= entry.size;
    LP_LOG(LP_LOG_VERBOSE, "%s: evicted %s (%lld bytes)", cache_name.c_str(), entry.file.c_str(), entry.size);
  }
}

FileCache::FileCache(const std::string &directory, const std::string &name)
    : directory_(directory), name_(name), state_(std::make_shared<State>()) {
  while (directory_.size() > 1 && directory_.back() == '/') directory_.pop_back();
  state_->folder = platform::MapDevicePath(directory_);
  state_->limit = limitBytes();
  std::error_code error;
  fs::create_directories(state_->folder, error);
  if (error)
    LP_LOG(LP_LOG_WARNING, "%s: cannot create %s: %s", name_.c_str(), state_->folder.c_str(), error.message().c_str());
}

std::string FileCache::getFile(const std::string &key, long long *size) {
  const std::string file = fileNameFor(key);
  std::lock_guard<std::mutex> lock(state_->mutex);
  const long long found = fileSize(state_->folder + "/" + file);
  if (size) *size = std::max(found, 0LL);
  if (found < 0) return {};
  state_->markUsed(file);
  return directory_ + "/" + file;
}

// Copied outside the lock; only the rename and the counting are under it. The copy is not
// synced: a file a power cut spoilt fails to load, and its owner fetches it again.
std::shared_ptr<FileCache::Handle> FileCache::addFile(const std::string &key, const std::string &source_path,
                                                      bool copy) {
  const std::string source = platform::MapDevicePath(source_path);
  std::error_code error;
  fs::create_directories(state_->folder, error);
  std::string temp = state_->folder + "/" + kTempPrefix + "XXXXXX";
  const int fd = ::mkstemp(temp.data());
  if (fd < 0) {
    LP_LOG(LP_LOG_ERROR, "%s: cannot create a file in %s: %s", name_.c_str(), state_->folder.c_str(),
           std::strerror(errno));
    return nullptr;
  }
  const bool copied = copyInto(source, fd);
  if (::close(fd) != 0 || !copied) {
    LP_LOG(LP_LOG_ERROR, "%s: cannot copy %s in", name_.c_str(), source.c_str());
    ::unlink(temp.c_str());
    return nullptr;
  }
  const std::string file = fileNameFor(key);
  const std::string target = state_->folder + "/" + file;
  std::lock_guard<std::mutex> lock(state_->mutex);
  if (state_->size < 0) state_->scan();
  const long long replaced = std::max(fileSize(target), 0LL);
  if (::rename(temp.c_str(), target.c_str()) != 0) {
    LP_LOG(LP_LOG_ERROR, "%s: cannot store %s: %s", name_.c_str(), target.c_str(), std::strerror(errno));
    ::unlink(temp.c_str());
    return nullptr;
  }
  if (!copy) ::unlink(source.c_str());
  state_->size += std::max(fileSize(target), 0LL) - replaced;
  state_->markUsed(file);
  auto handle = std::make_shared<Handle>(state_, file);
  if (state_->size > state_->limit) state_->evictOver(file, name_);
  return handle;
}

void FileCache::removeFile(const std::string &key) {
  const std::string path = state_->folder + "/" + fileNameFor(key);
  std::lock_guard<std::mutex> lock(state_->mutex);
  const long long had = fileSize(path);
  if (had < 0) return;
  if (::unlink(path.c_str()) != 0) {
    LP_LOG(LP_LOG_WARNING, "%s: cannot remove %s: %s", name_.c_str(), path.c_str(), std::strerror(errno));
    return;
  }
  if (state_->size >= 0) state_->size -= had;
}

}  // namespace lumenpress::utilities
