// The device shell's task calls on a PC: each is journalled, and a program with an
// executable stand-in under /coreapp/bin is really started.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>

#include <string>
#include <vector>

#include "device_tree.h"
#include "host_bitmap.h"
#include "panelkit.h"
#include "task_journal.h"
#include "task_registry.h"

using lumenpress::platform::DeviceTree;
using lumenpress::platform::TaskJournal;
using lumenpress::platform::TaskRegistry;

unsigned char pkmpc[16] = {};

namespace {

std::vector<std::string> strings(int count, const char *const *values) {
  std::vector<std::string> out;
  for (int i = 0; values && i < count; ++i) out.emplace_back(values[i] ? values[i] : "");
  return out;
}

int nullTerminatedCount(const char *const *values) {
  int count = 0;
  while (values && values[count]) ++count;
  return count;
}

int startAndJournal(const char *call, const char *program, const std::vector<std::string> &args, Json::Value members) {
  const int task = program ? TaskRegistry::instance().start(program, args) : -1;
  members["task"] = task;
  TaskJournal::append(call, members);
  return task;
}

std::string hex(const void *data, int size) {
  static const char digits[] = "0123456789abcdef";
  std::string out;
  const auto *bytes = static_cast<const unsigned char *>(data);
  for (int i = 0; bytes && i < size; ++i) {
    out += digits[bytes[i] >> 4];
    out += digits[bytes[i] & 15];
  }
  return out;
}

bool hostFileExists(const char *name) {
  return ::access(DeviceTree::instance().hostPath(name).c_str(), F_OK) == 0;
}

}  // namespace

extern "C" int GetCurrentTask(void) {
  return static_cast<int>(getpid());
}

extern "C" void SetTaskParameters(int task, const char *name, const char *title, const lpbitmap *icon, int flags) {
  Json::Value members;
  members["task"] = task;
  members["name"] = TaskJournal::text(name);
  members["title"] = TaskJournal::text(title);
  members["icon"] = icon ? Json::Value(icon->name) : Json::Value();
  members["flags"] = flags;
  TaskJournal::append("SetTaskParameters", members);
}

// Icons are drawn by the shell; on a PC a resource is only its name.
extern "C" const lpbitmap *GetResource(const char *name, const lpbitmap *deflt) {
  static std::mutex mutex;
  static std::map<std::string, lpbitmap> resources;
  if (!name || !*name) return deflt;
  std::lock_guard<std::mutex> lock(mutex);
  auto &resource = resources[name];
  resource.name = name;
  return &resource;
}

extern "C" int OpenTask(const char *path, int argc, const char *const *argv, int flags) {
  Json::Value members;
  members["path"] = TaskJournal::text(path);
  members["argv"] = TaskJournal::list(argc, argv);
  members["flags"] = flags;
  return startAndJournal("OpenTask", path, strings(argc, argv), members) < 0 ? -1 : 0;
}

extern "C" int NewTask(const char *path, const char *name, const char *const *argv, int flags, int activate) {
  Json::Value members;
  members["path"] = TaskJournal::text(path);
  members["name"] = TaskJournal::text(name);
  members["argv"] = TaskJournal::list(argv);
  members["flags"] = flags;
  members["activate"] = activate;
  return startAndJournal("NewTask", path, strings(nullTerminatedCount(argv), argv), members);
}

extern "C" int NewTaskEx(const char *path, const char *name, int argc, const char *const *argv, int flags,
                         int activate) {
  Json::Value members;
  members["path"] = TaskJournal::text(path);
  members["name"] = TaskJournal::text(name);
  members["argv"] = TaskJournal::list(argc, argv);
  members["flags"] = flags;
  members["activate"] = activate;
  return startAndJournal("NewTaskEx", path, strings(argc, argv), members);
}

extern "C" int CloseTask(int task, int flags, int wait) {
  const bool closed = TaskRegistry::instance().close(task, wait != 0);
  Json::Value members;
  members["task"] = task;
  members["flags"] = flags;
  members["wait"] = wait;
  members["closed"] = closed;
  TaskJournal::append("CloseTask", members);
  return closed ? 0 : -1;
}

extern "C" int FindTaskByAppName(const char *name) {
  return name ? TaskRegistry::instance().find(name) : -1;
}

extern "C" int IsTaskActive(void) {
  return hostFileExists("task_inactive") ? 0 : 1;
}

extern "C" int GetPreviousTaskInStack(int *task, int *subtask) {
  int found_task = 0;
  int found_subtask = 0;
  if (FILE *file = std::fopen(DeviceTree::instance().hostPath("previous_task").c_str(), "r")) {
    if (std::fscanf(file, "%d %d", &found_task, &found_subtask) < 1) found_task = 0;
    std::fclose(file);
  }
  if (task) *task = found_task;
  if (subtask) *subtask = found_subtask;
  return found_task > 0 ? 0 : -1;
}

extern "C" int SetActiveTask(int task, int subtask) {
  Json::Value members;
  members["task"] = task;
  members["subtask"] = subtask;
  TaskJournal::append("SetActiveTask", members);
  return 0;
}

extern "C" int SendRequestTo(int task, int request, const void *data, int size, int flags, int timeout_ms) {
  Json::Value members;
  members["task"] = task;
  members["request"] = request;
  members["data_hex"] = hex(data, size);
  members["size"] = size;
  members["flags"] = flags;
  members["timeout_ms"] = timeout_ms;
  TaskJournal::append("SendRequestTo", members);
  return 0;
}

extern "C" int OpenBook(const char *path, const char *parameters, int flags) {
  Json::Value members;
  members["path"] = TaskJournal::text(path);
  members["parameters"] = TaskJournal::text(parameters);
  members["flags"] = flags;
  return startAndJournal("OpenBook", "/coreapp/bin/reader.app", {path ? path : ""}, members) < 0 ? -1 : 0;
}

extern "C" int OpenBook2(const char *app, int argc, const char *const *argv, int flags) {
  Json::Value members;
  members["app"] = TaskJournal::text(app);
  members["argv"] = TaskJournal::list(argc, argv);
  members["flags"] = flags;
  return startAndJournal("OpenBook2", app, strings(argc, argv), members) < 0 ? -1 : 0;
}

extern "C" const char *pk_get_default_font(int) {
  static const std::string font = [] {
    const char *configured = std::getenv("LUMENPRESS_DEFAULT_FONT");
    return std::string(configured && *configured ? configured : "DejaVu Sans");
  }();
  return font.c_str();
}
