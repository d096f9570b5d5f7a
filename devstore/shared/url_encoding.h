// Percent-encoding of a URL's query values and of file names in Content-Disposition.
#ifndef DEVSTORE_URL_ENCODING_H
#define DEVSTORE_URL_ENCODING_H

#include <string>

namespace devstore {

class UrlEncoding {
public:
  // Every byte but RFC 3986's unreserved characters as %XX.
  static std::string encode(const std::string &text);
};

}  // namespace devstore

#endif
