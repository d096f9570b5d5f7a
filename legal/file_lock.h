// An exclusive flock on a file shared by the device's applications, held for the object's life.
#ifndef LUMENPRESS_LEGAL_FILE_LOCK_H
#define LUMENPRESS_LEGAL_FILE_LOCK_H

#include <string>

namespace lumenpress::legal {

class FileLock {
public:
  // A lock that cannot be had is logged; the caller goes on without it.
  explicit FileLock(const std::string &path);
  ~FileLock();
  FileLock(const FileLock &) = delete;
  FileLock &operator=(const FileLock &) = delete;

  bool locked() const { return locked_; }

private:
  int fd_ = -1;
  bool locked_ = false;
};

}  // namespace lumenpress::legal

#endif
