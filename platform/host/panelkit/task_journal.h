// The record of everything the program asked the device shell to start or tell:
// one JSON line per call under the device root, for people and tests to read.
#ifndef LUMENPRESS_HOST_TASK_JOURNAL_H
#define LUMENPRESS_HOST_TASK_JOURNAL_H

#include <json/value.h>

#include <string>
#include <vector>

namespace lumenpress::platform {

class TaskJournal {
public:
  // Appends {"call": call, ...members, "pid", "time"} as one line.
  static void append(const std::string &call, Json::Value members);

  // Text or JSON null for a null pointer.
  static Json::Value text(const char *value);
  static Json::Value list(int count, const char *const *values);
  // argv arrays that end with a null pointer.
  static Json::Value list(const char *const *values);
};

}  // namespace lumenpress::platform

#endif
