// JSON to and from text, compact, as the storefront's answers and the control interface use it.
#ifndef DEVSTORE_JSON_TEXT_H
#define DEVSTORE_JSON_TEXT_H

#include <json/json.h>

#include <string>

namespace devstore {

class JsonText {
public:
  static std::string write(const Json::Value &value);
  // False for text that is no JSON; `value` is then null.
  static bool parse(const std::string &text, Json::Value *value);
};

}  // namespace devstore

#endif
