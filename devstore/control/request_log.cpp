#include "request_log.h"

namespace devstore {

void RequestLog::record(const httplib::Request &request, const httplib::Response &response) {
  Json::Value entry(Json::objectValue);
  entry["method"] = request.method;
  entry["path"] = request.path;
  entry["target"] = request.target;
  Json::Value query(Json::objectValue);
  for (const auto &[key, value] : request.params) query[key] = value;
  entry["query"] = query;
  entry["authorization"] = request.get_header_value("Authorization");
  entry["content_type"] = request.get_header_value("Content-Type");
  entry["body"] = request.body;
  entry["status"] = response.status;
  if (response.has_header("X-Devstore-Fault")) entry["fault"] = response.get_header_value("X-Devstore-Fault");
  std::lock_guard<std::mutex> lock(mutex_);
  requests_.push_back(std::move(entry));
  if (requests_.size() > kLimit) requests_.pop_front();
}

Json::Value RequestLog::toJson() const {
  std::lock_guard<std::mutex> lock(mutex_);
  Json::Value list(Json::arrayValue);
  for (const auto &entry : requests_) list.append(entry);
  return list;
}

void RequestLog::clear() {
  std::lock_guard<std::mutex> lock(mutex_);
  requests_.clear();
}

}  // namespace devstore
