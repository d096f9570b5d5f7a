// Reads members of JSON answers from the network, whatever their shape: a member that is
// missing, of another type, or inside something that is no object reads as the empty value,
// as the client expects of null, instead of throwing.
#ifndef LUMENPRESS_JSON_MEMBER_H
#define LUMENPRESS_JSON_MEMBER_H

#include <json/json.h>

#include <string>

namespace lumenpress::bookstore {

class JsonMember {
public:
  static std::string text(const Json::Value &object, const char *name);
  static int integer(const Json::Value &object, const char *name);
  static bool flag(const Json::Value &object, const char *name);
  // Element `index` of an array; null for anything else.
  static Json::Value element(const Json::Value &array, Json::ArrayIndex index);

private:
  static Json::Value member(const Json::Value &object, const char *name);
};

}  // namespace lumenpress::bookstore

#endif
