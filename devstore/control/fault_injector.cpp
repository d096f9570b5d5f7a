#include "fault_injector.h"

#include <chrono>

namespace devstore {

bool FaultInjector::add(const Json::Value &request, std::string *error) {
  if (!request.isObject() || !request["path"].isString() || request["path"].asString().empty()) {
    *error = "a fault needs a \"path\"";
    return false;
  }
  Fault fault;
  fault.path = request["path"].asString();
  fault.remaining = request.get("count", 1).asInt();
  if (request["status"].isInt() && request["status"].asInt() >= 100 && request["status"].asInt() < 600) {
    fault.kind = "status";
    fault.status = request["status"].asInt();
    if (request["body"].isString()) fault.body = request["body"].asString();
  } else if (request["delay_ms"].isInt() && request["delay_ms"].asInt() > 0) {
    fault.kind = "delay";
    fault.delay_ms = request["delay_ms"].asInt();
  } else {
    for (const char *kind : {"drop", "truncate", "break"}) {
      if (request[kind].asBool()) fault.kind = kind;
    }
  }
  if (fault.kind.empty() || fault.remaining < 1) {
    *error =
        "a fault needs a \"count\" of at least 1 and one of \"status\" (100-599), \"delay_ms\", \"drop\", "
        "\"truncate\" or \"break\"";
    return false;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  faults_.push_back(fault);
  return true;
}

std::optional<Fault> FaultInjector::take(const std::string &path) {
  std::lock_guard<std::mutex> lock(mutex_);
  for (auto it = faults_.begin(); it != faults_.end(); ++it) {
    if (path.compare(0, it->path.size(), it->path) != 0) continue;
    Fault fault = *it;
    if (--it->remaining == 0) faults_.erase(it);
    return fault;
  }
  return std::nullopt;
}

void FaultInjector::clear() {
  std::lock_guard<std::mutex> lock(mutex_);
  faults_.clear();
}

bool FaultInjector::delay(int milliseconds) {
  std::unique_lock<std::mutex> lock(mutex_);
  return !stopped_.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return stopping_; });
}

void FaultInjector::stop() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
  }
  stopped_.notify_all();
}

}  // namespace devstore
