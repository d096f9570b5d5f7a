// The device applications this process started: each is an executable stand-in
// under the device root's /coreapp/bin, run as a child process.
#ifndef LUMENPRESS_HOST_TASK_REGISTRY_H
#define LUMENPRESS_HOST_TASK_REGISTRY_H

#include <sys/types.h>

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace lumenpress::platform {

class TaskRegistry {
public:
  static TaskRegistry &instance();

  // Runs the stand-in of a device program when one exists. Returns its task id,
  // 0 when there is no stand-in, -1 when it could not be started.
  int start(const std::string &device_program, const std::vector<std::string> &args);
  // Task id of a running stand-in, matched by device path or by file name; -1 when none.
  int find(const std::string &name);
  // Ends a stand-in we started; with wait, until it has gone (at most about two seconds).
  bool close(int task, bool wait);

private:
  TaskRegistry() = default;
  void reapLocked();

  std::mutex mutex_;
  std::map<pid_t, std::string> running_;
};

}  // namespace lumenpress::platform

#endif
