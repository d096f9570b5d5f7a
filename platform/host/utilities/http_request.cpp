#include "http_request.h"

#include "lp_log.h"

namespace lumenpress::utilities {

namespace {

bool unreserved(unsigned char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
         c == '_' || c == '~';
}

std::string percentEncode(const std::string &text) {
  static const char digits[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(text.size() * 3);
  for (unsigned char c : text) {
    if (unreserved(c)) {
      out += static_cast<char>(c);
    } else {
      out += '%';
      out += digits[c >> 4];
      out += digits[c & 15];
    }
  }
  return out;
}

bool hasLineBreak(const std::string &text) {
  return text.find_first_of("\r\n") != std::string::npos;
}

}  // namespace

HttpRequest::HttpRequest(const std::string &method, const std::string &url) : method_(method), url_(url) {}

void HttpRequest::AddHeader(const std::string &name, const std::string &value) {
  // Neither text goes to the log: the value may be a credential, and the name carries the break.
  if (hasLineBreak(name) || hasLineBreak(value)) {
    LP_LOG(LP_LOG_ERROR, "header with a line break refused");
    return;
  }
  headers_.emplace_back(name, value);
}

void HttpRequest::AddPostData(const std::string &text) {
  post_data_ += text;
}

void HttpRequest::AddGetParam(const std::string &key, const std::string &value) {
  if (!query_.empty()) query_ += '&';
  query_ += percentEncode(key) + "=" + percentEncode(value);
}

std::string HttpRequest::encoded_url() const {
  if (query_.empty()) return url_;
  const auto hash = url_.find('#');
  const std::string base = url_.substr(0, hash);
  const std::string fragment = hash == std::string::npos ? "" : url_.substr(hash);
  const char *separator = "?";
  if (base.find('?') != std::string::npos) separator = base.back() == '?' || base.back() == '&' ? "" : "&";
  return base + separator + query_ + fragment;
}

std::vector<std::string> HttpRequest::GetHeaders() const {
  std::vector<std::string> lines;
  lines.reserve(headers_.size());
  for (const auto &[name, value] : headers_) lines.push_back(name + ": " + value);
  return lines;
}

}  // namespace lumenpress::utilities
