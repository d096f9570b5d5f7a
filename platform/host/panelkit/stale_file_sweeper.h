// Removes what writers killed in an earlier run left behind: temporary files of one naming
// pattern, older than this process, whose writing process is gone.
#ifndef LUMENPRESS_HOST_STALE_FILE_SWEEPER_H
#define LUMENPRESS_HOST_STALE_FILE_SWEEPER_H

#include <filesystem>
#include <mutex>
#include <regex>
#include <set>
#include <string>

namespace lumenpress::platform {

class StaleFileSweeper {
public:
  // `pattern` matches a whole file name; its first group is the writing process's id.
  explicit StaleFileSweeper(const char *pattern);

  // Sweeps `folder` (a real path) the first time this process asks; later calls do nothing.
  void sweepOnce(const std::string &folder);

private:
  int sweep(const std::string &folder) const;
  bool isStale(const std::filesystem::directory_entry &entry) const;

  const std::regex pattern_;
  std::mutex mutex_;
  std::set<std::string> swept_;
};

}  // namespace lumenpress::platform

#endif
