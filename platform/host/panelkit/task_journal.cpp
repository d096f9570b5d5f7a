#include "task_journal.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

#include <json/writer.h>

#include "device_tree.h"

namespace lumenpress::platform {

namespace {

std::string oneLine(const Json::Value &value) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "";
  return Json::writeString(builder, value) + "\n";
}

// One write with O_APPEND keeps lines whole across threads and processes.
void appendLine(const std::string &path, const std::string &line) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (fd < 0) return;
  ssize_t written;
  do {
    written = ::write(fd, line.data(), line.size());
  } while (written < 0 && errno == EINTR);
  ::close(fd);
}

}  // namespace

void TaskJournal::append(const std::string &call, Json::Value members) {
  members["call"] = call;
  members["pid"] = static_cast<int>(getpid());
  members["time"] = Json::Int64(
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
          .count());
  appendLine(DeviceTree::instance().hostPath("task_journal.jsonl"), oneLine(members));
}

Json::Value TaskJournal::text(const char *value) {
  return value ? Json::Value(value) : Json::Value();
}

Json::Value TaskJournal::list(int count, const char *const *values) {
  Json::Value array(Json::arrayValue);
  for (int i = 0; values && i < count; ++i) array.append(text(values[i]));
  return array;
}

Json::Value TaskJournal::list(const char *const *values) {
  int count = 0;
  while (values && values[count]) ++count;
  return list(count, values);
}

}  // namespace lumenpress::platform
