#include "stale_file_sweeper.h"

#include <signal.h>

#include <cerrno>
#include <cstdlib>
#include <limits>

#include "lp_log.h"

namespace fs = std::filesystem;

namespace lumenpress::platform {

namespace {

// Taken as the program loads, which is as early as any of our files could be written.
const fs::file_time_type kProcessStart = fs::file_time_type::clock::now();

bool isRunning(pid_t pid) {
  return ::kill(pid, 0) == 0 || errno == EPERM;
}

}  // namespace

StaleFileSweeper::StaleFileSweeper(const char *pattern) : pattern_(pattern) {}

void StaleFileSweeper::sweepOnce(const std::string &folder) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!swept_.insert(folder).second) return;
  const int removed = sweep(folder);
  if (removed > 0) LP_LOG(LP_LOG_INFO, "removed %d files that killed writers left in %s", removed, folder.c_str());
}

int StaleFileSweeper::sweep(const std::string &folder) const {
  int removed = 0;
  std::error_code error;
  std::error_code remove_error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (isStale(*it) && fs::remove(it->path(), remove_error)) ++removed;
  }
  return removed;
}

bool StaleFileSweeper::isStale(const fs::directory_entry &entry) const {
  std::smatch match;
  const std::string name = entry.path().filename().string();
  if (!std::regex_match(name, match, pattern_) || match.size() < 2) return false;
  const long writer = std::strtol(match.str(1).c_str(), nullptr, 10);
  std::error_code error;
  const fs::file_time_type written = entry.last_write_time(error);
  return !error && written < kProcessStart && writer > 0 && writer <= std::numeric_limits<pid_t>::max() &&
         !isRunning(static_cast<pid_t>(writer));
}

}  // namespace lumenpress::platform
