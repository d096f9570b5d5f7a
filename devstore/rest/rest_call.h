// One REST request as the services see it: the store from its path, its JSON body and the
// customer its token names.
#ifndef DEVSTORE_REST_CALL_H
#define DEVSTORE_REST_CALL_H

#include <json/json.h>

#include <optional>
#include <string>
#include <vector>

#include "records.h"

namespace devstore {

struct RestCall {
  StoreRecord store;
  // "http://<host>", as the client reached us; links we hand out must lead back here.
  std::string origin;
  // Always an object; members the client left out read as null.
  Json::Value body{Json::objectValue};
  // 0 when the request names no customer in force.
  long long customer = 0;

  std::string storeUrl() const { return origin + "/" + store.code + "/"; }
  // A member as text: a string as it is, a whole number printed; nothing for any other kind,
  // so a service never asks jsoncpp for a conversion that throws.
  std::optional<std::string> text(const char *name) const { return textOf(body[name]); }
  static std::optional<std::string> textOf(const Json::Value &value) {
    if (value.isString()) return value.asString();
    if (value.isInt64()) return std::to_string(value.asInt64());
    return std::nullopt;
  }
  // The array member `many` when it is there, else the lone member `one`: the client sends a
  // single book in the one and a selection in the other.
  std::vector<Json::Value> list(const char *one, const char *many) const {
    std::vector<Json::Value> values;
    if (body[many].isArray()) {
      for (const auto &value : body[many]) values.push_back(value);
    } else if (!body[one].isNull()) {
      values.push_back(body[one]);
    }
    return values;
  }
  // A member that names a row: digits only, as text or number.
  std::optional<long long> id(const char *name) const { return idOf(body[name]); }
  static std::optional<long long> idOf(const Json::Value &value) {
    const auto digits = textOf(value);
    if (!digits || digits->empty() || digits->size() > 18 ||
        digits->find_first_not_of("0123456789") != std::string::npos) {
      return std::nullopt;
    }
    return std::stoll(*digits);
  }
};

}  // namespace devstore

#endif
