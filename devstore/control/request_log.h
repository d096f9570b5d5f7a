// The requests the storefront answered, newest last, for tests to see what went on the wire.
#ifndef DEVSTORE_REQUEST_LOG_H
#define DEVSTORE_REQUEST_LOG_H

#include <httplib.h>
#include <json/json.h>

#include <deque>
#include <mutex>

namespace devstore {

class RequestLog {
public:
  // Recorded before the answer is sent, so a client that has its answer finds its request here.
  void record(const httplib::Request &request, const httplib::Response &response);
  // One object per request: method, path, target (path and query as sent), query (decoded
  // parameters), authorization, content_type, body, status and, when one was injected, fault.
  Json::Value toJson() const;
  void clear();

private:
  static constexpr size_t kLimit = 10000;

  mutable std::mutex mutex_;
  std::deque<Json::Value> requests_;
};

}  // namespace devstore

#endif
