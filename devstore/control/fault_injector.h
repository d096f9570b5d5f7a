// Failures that tests ask for: the next N requests to a path answer with a status, come
// late, lose their connection, or bring a body cut short.
#ifndef DEVSTORE_FAULT_INJECTOR_H
#define DEVSTORE_FAULT_INJECTOR_H

#include <json/json.h>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace devstore {

struct Fault {
  // Requests whose path begins with this text are hit.
  std::string path;
  int remaining = 1;
  // One of "status", "delay", "drop" (the connection closes after the headers), "truncate"
  // (it closes short of the announced length) and "break" (the body is cut in half but
  // delivered as if whole, so the client gets broken XML or JSON).
  std::string kind;
  int status = 0;
  // The body a status fault answers with, when the test gives one; a body of the store's own
  // shape (or not) lets a test reach the client's handling of odd answers.
  std::optional<std::string> body;
  int delay_ms = 0;
};

class FaultInjector {
public:
  // From {"path", "count", and one of "status" (with an optional "body"), "delay_ms", "drop",
  // "truncate", "break"}.
  bool add(const Json::Value &request, std::string *error);
  // The fault for a request to `path`, counted as used; none when no fault matches.
  std::optional<Fault> take(const std::string &path);
  void clear();

  // Waits as a delay fault says; false when the server stops meanwhile.
  bool delay(int milliseconds);
  void stop();

private:
  std::mutex mutex_;
  std::condition_variable stopped_;
  bool stopping_ = false;
  std::vector<Fault> faults_;
};

}  // namespace devstore

#endif
