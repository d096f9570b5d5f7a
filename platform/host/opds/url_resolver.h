// Reference resolution of RFC 3986 section 5, for the relative links of the catalogue's feeds.
#ifndef LUMENPRESS_OPDS_URL_RESOLVER_H
#define LUMENPRESS_OPDS_URL_RESOLVER_H

#include <string>
#include <string_view>

namespace lumenpress::opds {

class UrlResolver {
public:
  // The target of href read against base. Percent-encoding is kept as written; a data: URI comes back unchanged.
  static std::string Resolve(const std::string &base, const std::string &href);

private:
  struct Parts {
    std::string_view scheme;
    std::string_view authority;
    std::string_view path;
    std::string_view query;
    std::string_view fragment;
    bool has_scheme = false;
    bool has_authority = false;
    bool has_query = false;
    bool has_fragment = false;
  };

  static Parts Split(std::string_view uri);
  static std::string Merge(const Parts &base, std::string_view path);
  static std::string RemoveDotSegments(std::string_view path);
};

}  // namespace lumenpress::opds

#endif
