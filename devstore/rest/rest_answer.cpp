#include "rest_answer.h"

#include "json_text.h"

namespace devstore {

void RestAnswer::sendTo(httplib::Response &response) const {
  response.status = status;
  if (!location.empty()) response.set_header("Location", location);
  if (status == 401) response.set_header("WWW-Authenticate", "Bearer realm=\"store\"");
  response.set_content(body, type.c_str());
}

RestAnswer RestAnswer::json(const Json::Value &value) {
  RestAnswer answer;
  answer.body = JsonText::write(value);
  return answer;
}

RestAnswer RestAnswer::string(const std::string &text) {
  return json(Json::Value(text));
}

RestAnswer RestAnswer::boolean(bool value) {
  return json(Json::Value(value));
}

RestAnswer RestAnswer::error(int status, const std::string &message, int code) {
  Json::Value value(Json::objectValue);
  value["message"] = message;
  if (code != 0) value["code"] = code;
  RestAnswer answer = json(value);
  answer.status = status;
  return answer;
}

RestAnswer RestAnswer::page(const std::string &html) {
  RestAnswer answer;
  answer.body = html;
  answer.type = "text/html; charset=utf-8";
  return answer;
}

RestAnswer RestAnswer::text(const std::string &text) {
  RestAnswer answer;
  answer.body = text;
  answer.type = "text/plain; charset=utf-8";
  return answer;
}

RestAnswer RestAnswer::redirect(const std::string &url) {
  RestAnswer answer;
  answer.status = 303;
  answer.location = url;
  answer.type = "text/plain; charset=utf-8";
  answer.body = "see " + url + "\n";
  return answer;
}

}  // namespace devstore
