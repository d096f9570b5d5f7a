#include "framework/filesystem.h"

#include <filesystem>

#include "device_path.h"
#include "lp_log.h"

namespace fs = std::filesystem;
using lumenpress::platform::MapDevicePath;

namespace lumenpress::system::filesystem {

// A rename where it can be; across file systems a copy, then the source goes.
bool MoveFile(const std::string &from, const std::string &to) {
  std::error_code error;
  fs::rename(MapDevicePath(from), MapDevicePath(to), error);
  if (!error) return true;
  if (!CopyFile(from, to)) return false;
  fs::remove(MapDevicePath(from), error);
  return true;
}

// Through a temporary file beside the target, so the target is whole or absent.
bool CopyFile(const std::string &from, const std::string &to) {
  const std::string target = MapDevicePath(to);
  const std::string temporary = target + ".copy";
  std::error_code error;
  fs::copy_file(MapDevicePath(from), temporary, fs::copy_options::overwrite_existing, error);
  if (!error) fs::rename(temporary, target, error);
  if (!error) return true;
  LP_LOG(LP_LOG_ERROR, "cannot copy %s to %s: %s", from.c_str(), to.c_str(), error.message().c_str());
  fs::remove(temporary, error);
  return false;
}

}  // namespace lumenpress::system::filesystem
