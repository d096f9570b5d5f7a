#include "json_member.h"

#include <cstring>
#include <exception>

namespace lumenpress::bookstore {

bool JsonMember::parse(const std::string &text, Json::Value *value) {
  try {
    return Json::Reader().parse(text, *value);
  } catch (const std::exception &) {
    // jsoncpp throws where the nesting passes its limit; what it built so far is no answer.
    *value = Json::Value();
    return false;
  }
}

const Json::Value *JsonMember::member(const Json::Value &object, const char *name) {
  return object.isObject() ? object.find(name, name + std::strlen(name)) : nullptr;
}

std::string JsonMember::text(const Json::Value &object, const char *name) {
  const Json::Value *value = member(object, name);
  return value && value->isConvertibleTo(Json::stringValue) ? value->asString() : std::string();
}

int JsonMember::integer(const Json::Value &object, const char *name, int missing) {
  const Json::Value *value = member(object, name);
  return value && value->isConvertibleTo(Json::intValue) ? value->asInt() : missing;
}

bool JsonMember::flag(const Json::Value &object, const char *name) {
  const Json::Value *value = member(object, name);
  return value && value->isConvertibleTo(Json::booleanValue) && value->asBool();
}

Json::Value JsonMember::element(const Json::Value &array, Json::ArrayIndex index) {
  return array.isArray() && index < array.size() ? array[index] : Json::Value();
}

}  // namespace lumenpress::bookstore
