// The parts of an absolute URL: scheme, user, host, port, path, query and fragment.
#ifndef LUMENPRESS_URL_H
#define LUMENPRESS_URL_H

#include <string>

namespace lumenpress::utilities {

class Url {
public:
  // Surrounding white space is ignored. A text without scheme and host, or with a bad port,
  // is invalid, and all its parts are empty.
  explicit Url(const std::string &text);

  bool isValid() const { return valid_; }
  // Lower case.
  const std::string &scheme() const { return scheme_; }
  const std::string &userInfo() const { return user_info_; }
  // Lower case; an IPv6 address without its brackets.
  const std::string &host() const { return host_; }
  // The given port, else the scheme's own (80, 443), else -1.
  int port() const { return port_; }
  // "/" for an http or https URL without a path.
  const std::string &path() const { return path_; }
  const std::string &query() const { return query_; }
  const std::string &fragment() const { return fragment_; }

private:
  bool parse(std::string text);
  bool parseAuthority(const std::string &authority);
  bool parsePort(const std::string &text);

  bool valid_ = false;
  std::string scheme_;
  std::string user_info_;
  std::string host_;
  int port_ = -1;
  std::string path_;
  std::string query_;
  std::string fragment_;
};

}  // namespace lumenpress::utilities

#endif
