// Readings of a response vector as the transport leaves it: the body followed by one zero byte.
#ifndef LUMENPRESS_RESPONSE_BODY_H
#define LUMENPRESS_RESPONSE_BODY_H

#include <json/json.h>

#include <string>
#include <vector>

namespace lumenpress::bookstore {

class ResponseBody {
public:
  // The text up to the first zero byte.
  static std::string text(const std::vector<char> &response);
  // A bare JSON string with its quotes cut off, unescaped as little as the store escapes it:
  // not at all. False, and `out` untouched, for a body of fewer than 3 bytes with the zero.
  static bool unquote(const std::vector<char> &response, std::string *out);
  static bool parse(const std::vector<char> &response, Json::Value *value);
};

}  // namespace lumenpress::bookstore

#endif
