// Signs requests to the legal service.
#ifndef LUMENPRESS_SIGNATURE_H
#define LUMENPRESS_SIGNATURE_H

#include <string>

#include "http_request.h"

namespace lumenpress::utilities {

class Signature {
public:
  static std::string GenerateNonce();
  // Over the request as built so far, query parameters included.
  static std::string CreateSignature(const HttpRequest &request, const std::string &nonce,
                                     const std::string &client_key);
};

}  // namespace lumenpress::utilities

#endif
