// One HTTP request as the store builds it: method, URL, query parameters, headers and body.
#ifndef LUMENPRESS_HTTP_REQUEST_H
#define LUMENPRESS_HTTP_REQUEST_H

#include <string>
#include <utility>
#include <vector>

namespace lumenpress::utilities {

class HttpRequest {
public:
  HttpRequest(const std::string &method, const std::string &url);

  void AddHeader(const std::string &name, const std::string &value);
  // Appends to the body.
  void AddPostData(const std::string &text);
  // A query parameter, percent-encoded into the URL.
  void AddGetParam(const std::string &key, const std::string &value);

  // The URL with its query parameters.
  std::string encoded_url() const;
  // Header lines ready to send: "Name: value".
  std::vector<std::string> GetHeaders() const;

  const std::string &method() const { return method_; }
  const std::string &url() const { return url_; }
  const std::string &post_data() const { return post_data_; }

private:
  std::string method_;
  std::string url_;
  std::string query_;
  std::string post_data_;
  std::vector<std::pair<std::string, std::string>> headers_;
};

}  // namespace lumenpress::utilities

#endif
