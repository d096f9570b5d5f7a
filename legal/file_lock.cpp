#include "file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "device_path.h"
#include "lp_log.h"

namespace lumenpress::legal {

FileLock::FileLock(const std::string &path) {
  fd_ = ::open(platform::MapDevicePath(path).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (fd_ < 0) {
    LP_LOG(LP_LOG_ERROR, "Failed to open lock file with errno [%d]", errno);
    return;
  }
  int result;
  do {
    result = ::flock(fd_, LOCK_EX);
  } while (result != 0 && errno == EINTR);
  locked_ = result == 0;
  if (!locked_) LP_LOG(LP_LOG_ERROR, "Failed to lock file with errno [%d]", errno);
}

FileLock::~FileLock() {
  if (fd_ < 0) return;
  if (locked_) ::flock(fd_, LOCK_UN);
  ::close(fd_);
}

}  // namespace lumenpress::legal
