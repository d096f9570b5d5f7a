// One HTTP request as the store builds it: method, URL, query parameters, headers and body.
#ifndef LUMENPRESS_HTTP_REQUEST_H
#define LUMENPRESS_HTTP_REQUEST_H

#include <string>
#include <utility>
#include <vector>

namespace lumenpress::utilities {

class HttpRequest {
public:
  using Header = std::pair<std::string, std::string>;

  HttpRequest(const std::string &method, const std::string &url);

  // A name or value with a line break is refused: it would smuggle in headers of its own.
  void AddHeader(const std::string &name, const std::string &value);
  // Appends to the body.
  void AddPostData(const std::string &text);
  // A query parameter, percent-encoded (RFC 3986 unreserved characters stay as they are).
  void AddGetParam(const std::string &key, const std::string &value);

  // The URL with its query parameters, after any query it already had.
  std::string encoded_url() const;
  // Header lines ready to send: "Name: value".
  std::vector<std::string> GetHeaders() const;

  const std::string &method() const { return method_; }
  const std::string &url() const { return url_; }
  const std::string &post_data() const { return post_data_; }
  const std::vector<Header> &headers() const { return headers_; }

private:
  std::string method_;
  std::string url_;
  std::string query_;
  std::string post_data_;
  std::vector<Header> headers_;
};

}  // namespace lumenpress::utilities

#endif
