#include "log_sink.h"

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "device_tree.h"
#include "panelkit.h"

int g_process_pid = static_cast<int>(getpid());

namespace lumenpress::platform {

namespace {

void writeAll(int fd, const std::string &text) {
  const char *data = text.data();
  size_t left = text.size();
  while (left > 0) {
    const ssize_t written = ::write(fd, data, left);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    data += written;
    left -= static_cast<size_t>(written);
  }
}

std::string timestamp() {
  timeval now{};
  gettimeofday(&now, nullptr);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  char text[40];
  const size_t length = strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
  std::snprintf(text + length, sizeof text - length, ".%03ld", static_cast<long>(now.tv_usec / 1000));
  return text;
}

}  // namespace

// Never destroyed: threads that outlive main, and static destructors, still log.
LogSink &LogSink::instance() {
  static auto *sink = new LogSink;
  return *sink;
}

int LogSink::threshold() {
  const char *value = std::getenv("LUMENPRESS_LOG_LEVEL");
  return value && *value ? std::atoi(value) : 3;
}

std::string LogSink::formatLine(int level, const char *file, int line, const char *function, const char *format,
                                va_list args) const {
  va_list copy;
  va_copy(copy, args);
  const int needed = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  std::vector<char> message(needed > 0 ? static_cast<size_t>(needed) + 1 : 1, '\0');
  if (needed > 0) std::vsnprintf(message.data(), message.size(), format, args);

  std::string text = timestamp() + " <" + std::to_string(level) + "> " + (file ? file : "?") + ":" +
                     std::to_string(line) + " " + (function ? function : "?") + ": " + message.data();
  if (text.empty() || text.back() != '\n') text += '\n';
  return text;
}

// Reopened when the device root changes, so each test's log stays in its own root.
int LogSink::logFile() {
  const std::string path = DeviceTree::instance().hostPath("kiosk-2.log");
  if (path != log_path_) {
    if (log_fd_ >= 0) ::close(log_fd_);
    log_fd_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    log_path_ = path;
  }
  return log_fd_;
}

void LogSink::write(int level, const char *file, int line, const char *function, const char *format, va_list args) {
  if (level > threshold()) return;
  const std::string text = formatLine(level, file, line, function, format, args);
  std::lock_guard<std::mutex> lock(mutex_);
  writeAll(STDERR_FILENO, text);
  const int fd = logFile();
  if (fd >= 0) writeAll(fd, text);
}

}  // namespace lumenpress::platform

extern "C" void lp_print_log2(int level, const char *file, int line, const char *function, const char *format, ...) {
  if (!format) return;
  va_list args;
  va_start(args, format);
  lumenpress::platform::LogSink::instance().write(level, file, line, function, format, args);
  va_end(args);
}
