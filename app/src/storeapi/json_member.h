// Reads JSON from the network, whatever its shape: a text that does not parse fails without
// throwing, and a member that is missing, of another type, or inside something that is no
// object reads as the empty value, as the client expects of null.
#ifndef LUMENPRESS_JSON_MEMBER_H
#define LUMENPRESS_JSON_MEMBER_H

#include <json/json.h>

#include <string>

namespace lumenpress::bookstore {

class JsonMember {
public:
  // False for a text that is no JSON, as jsoncpp's reader says, or that nests deeper than it goes.
  static bool parse(const std::string &text, Json::Value *value);

  static std::string text(const Json::Value &object, const char *name);
  // `missing` for a member that is absent or no number.
  static int integer(const Json::Value &object, const char *name, int missing = 0);
  static bool flag(const Json::Value &object, const char *name);
  // Element `index` of an array; null for anything else.
  static Json::Value element(const Json::Value &array, Json::ArrayIndex index);

private:
  static const Json::Value *member(const Json::Value &object, const char *name);
};

}  // namespace lumenpress::bookstore

#endif
