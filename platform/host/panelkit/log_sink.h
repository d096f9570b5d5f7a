// Where the device's log lines go on a PC: standard error and a log file under
// the device root, one whole line per write so that threads and processes never interleave.
#ifndef LUMENPRESS_HOST_LOG_SINK_H
#define LUMENPRESS_HOST_LOG_SINK_H

#include <cstdarg>
#include <mutex>
#include <string>

namespace lumenpress::platform {

class LogSink {
public:
  static LogSink &instance();

  void write(int level, const char *file, int line, const char *function, const char *format, va_list args);

  // Highest level written, from LUMENPRESS_LOG_LEVEL (default 3).
  static int threshold();

private:
  LogSink() = default;
  std::string formatLine(int level, const char *file, int line, const char *function, const char *format,
                         va_list args) const;
  int logFile();

  std::mutex mutex_;
  std::string log_path_;
  int log_fd_ = -1;
};

}  // namespace lumenpress::platform

#endif
