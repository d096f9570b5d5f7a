// What a REST handler answers. The client reads some answers as bare JSON strings or as the
// words true and false, so each form has its own maker.
#ifndef DEVSTORE_REST_ANSWER_H
#define DEVSTORE_REST_ANSWER_H

#include <httplib.h>
#include <json/json.h>

#include <string>

namespace devstore {

struct RestAnswer {
  int status = 200;
  std::string body;
  std::string type = "application/json";
  // Set for a redirect.
  std::string location;

  bool ok() const { return status == 200; }
  void sendTo(httplib::Response &response) const;

  static RestAnswer json(const Json::Value &value);
  // A quoted JSON string; the client cuts the first and last byte, so nothing may follow.
  static RestAnswer string(const std::string &text);
  static RestAnswer boolean(bool value);
  // {"message": ...}, and {"code": ...} when the client reads one.
  static RestAnswer error(int status, const std::string &message, int code = 0);
  static RestAnswer page(const std::string &html);
  static RestAnswer text(const std::string &text);
  static RestAnswer redirect(const std::string &url);
};

}  // namespace devstore

#endif
