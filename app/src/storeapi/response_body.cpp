#include "response_body.h"

#include <cstring>

#include "json_member.h"

namespace lumenpress::bookstore {

std::string ResponseBody::text(const std::vector<char> &response) {
  if (response.empty()) return {};
  return std::string(response.data(), strnlen(response.data(), response.size()));
}

bool ResponseBody::unquote(const std::vector<char> &response, std::string *out) {
  if (response.size() < 3) return false;
  out->assign(response.begin() + 1, response.end() - 2);
  return true;
}

bool ResponseBody::parse(const std::vector<char> &response, Json::Value *value) {
  return JsonMember::parse(text(response), value);
}

}  // namespace lumenpress::bookstore
