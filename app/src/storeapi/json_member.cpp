#include "json_member.h"

namespace lumenpress::bookstore {

Json::Value JsonMember::member(const Json::Value &object, const char *name) {
  return object.isObject() ? object[name] : Json::Value();
}

std::string JsonMember::text(const Json::Value &object, const char *name) {
  const Json::Value value = member(object, name);
  return value.isConvertibleTo(Json::stringValue) ? value.asString() : std::string();
}

int JsonMember::integer(const Json::Value &object, const char *name) {
  const Json::Value value = member(object, name);
  return value.isConvertibleTo(Json::intValue) ? value.asInt() : 0;
}

bool JsonMember::flag(const Json::Value &object, const char *name) {
  const Json::Value value = member(object, name);
  return value.isConvertibleTo(Json::booleanValue) && value.asBool();
}

Json::Value JsonMember::element(const Json::Value &array, Json::ArrayIndex index) {
  return array.isArray() && index < array.size() ? array[index] : Json::Value();
}

}  // namespace lumenpress::bookstore
