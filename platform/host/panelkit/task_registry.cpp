#include "task_registry.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "device_path.h"
#include "lp_log.h"

extern char **environ;

namespace lumenpress::platform {

namespace {

std::string fileName(const std::string &path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

pid_t spawn(const std::string &program, const std::vector<std::string> &args) {
  std::vector<char *> argv;
  argv.push_back(const_cast<char *>(program.c_str()));
  for (const auto &arg : args) argv.push_back(const_cast<char *>(arg.c_str()));
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  pid_t pid = -1;
  const int error = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? pid : -1;
}

}  // namespace

TaskRegistry &TaskRegistry::instance() {
  static TaskRegistry registry;
  return registry;
}

int TaskRegistry::start(const std::string &device_program, const std::vector<std::string> &args) {
  const std::string program = MapDevicePath(device_program);
  if (::access(program.c_str(), X_OK) != 0) return 0;
  const pid_t pid = spawn(program, args);
  if (pid < 0) {
    LP_LOG(LP_LOG_ERROR, "cannot start %s", program.c_str());
    return -1;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  running_[pid] = device_program;
  return static_cast<int>(pid);
}

void TaskRegistry::reapLocked() {
  for (auto it = running_.begin(); it != running_.end();) {
    int status = 0;
    it = ::waitpid(it->first, &status, WNOHANG) == 0 ? std::next(it) : running_.erase(it);
  }
}

int TaskRegistry::find(const std::string &name) {
  std::lock_guard<std::mutex> lock(mutex_);
  reapLocked();
  for (const auto &[pid, path] : running_) {
    if (path == name || fileName(path) == name) return static_cast<int>(pid);
  }
  return -1;
}

bool TaskRegistry::close(int task, bool wait) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    reapLocked();
    if (running_.count(task) == 0) return false;
    ::kill(task, SIGTERM);
  }
  if (!wait) return true;
  for (int i = 0; i < 200; ++i) {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      reapLocked();
      if (running_.count(task) == 0) return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

}  // namespace lumenpress::platform
