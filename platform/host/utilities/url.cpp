#include "url.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace lumenpress::utilities {

namespace {

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

std::string trimmed(const std::string &text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bool validScheme(const std::string &scheme) {
  if (scheme.empty() || !std::isalpha(static_cast<unsigned char>(scheme[0]))) return false;
  return std::all_of(scheme.begin(), scheme.end(),
                     [](unsigned char c) { return std::isalnum(c) || c == '+' || c == '-' || c == '.'; });
}

bool isDigit(unsigned char c) {
  return c >= '0' && c <= '9';
}

// A registered name or IPv4 address: letters, digits, percent escapes, the sub-delimiters,
// and UTF-8 for internationalised names.
bool validHostName(const std::string &host) {
  return std::all_of(host.begin(), host.end(), [](unsigned char c) {
    return std::isalnum(c) || c >= 0x80 || (c != 0 && std::strchr("-._~%!$&'()*+,;=", c) != nullptr);
  });
}

bool validIpv6(const std::string &host) {
  return host.find(':') != std::string::npos && std::all_of(host.begin(), host.end(), [](unsigned char c) {
           return std::isxdigit(c) || c == ':' || c == '.';
         });
}

int defaultPort(const std::string &scheme) {
  if (scheme == "http") return 80;
  if (scheme == "https") return 443;
  return -1;
}

// Splits text at the first of the given characters; the separator stays with the tail.
std::string takeUntil(std::string *text, const char *separators) {
  const auto at = text->find_first_of(separators);
  std::string head = text->substr(0, at);
  text->erase(0, at == std::string::npos ? text->size() : at);
  return head;
}

}  // namespace

Url::Url(const std::string &text) {
  valid_ = parse(trimmed(text));
  if (valid_) return;
  // Nothing of a rejected text may pass for a part of it, such as a host to compare.
  scheme_ = user_info_ = host_ = path_ = query_ = fragment_ = std::string();
  port_ = -1;
}

bool Url::parse(std::string text) {
  const auto colon = text.find("://");
  if (colon == std::string::npos || !validScheme(text.substr(0, colon))) return false;
  scheme_ = lower(text.substr(0, colon));
  text.erase(0, colon + 3);
  if (!parseAuthority(takeUntil(&text, "/?#"))) return false;
  path_ = takeUntil(&text, "?#");
  if (!text.empty() && text[0] == '?') query_ = takeUntil(&text, "#").substr(1);
  if (!text.empty()) fragment_ = text.substr(1);
  if (path_.empty() && defaultPort(scheme_) > 0) path_ = "/";
  return true;
}

bool Url::parseAuthority(const std::string &authority) {
  std::string rest = authority;
  const auto at = rest.rfind('@');
  if (at != std::string::npos) {
    user_info_ = rest.substr(0, at);
    rest.erase(0, at + 1);
  }
  std::string port;
  if (!rest.empty() && rest[0] == '[') {
    const auto close = rest.find(']');
    if (close == std::string::npos) return false;
    host_ = rest.substr(1, close - 1);
    if (!validIpv6(host_)) return false;
    rest.erase(0, close + 1);
    if (!rest.empty() && rest[0] != ':') return false;
    if (!rest.empty()) port = rest.substr(1);
  } else {
    const auto colon = rest.find(':');
    host_ = rest.substr(0, colon);
    if (!validHostName(host_)) return false;
    if (colon != std::string::npos) port = rest.substr(colon + 1);
  }
  host_ = lower(host_);
  if (host_.empty()) return false;
  return port.empty() && authority.back() != ':' ? (port_ = defaultPort(scheme_), true) : parsePort(port);
}

bool Url::parsePort(const std::string &text) {
  if (text.empty() || text.size() > 5 || !std::all_of(text.begin(), text.end(), isDigit)) return false;
  port_ = std::stoi(text);
  return port_ > 0 && port_ <= 65535;
}

}  // namespace lumenpress::utilities
