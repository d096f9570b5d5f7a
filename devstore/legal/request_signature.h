// The legal service's check of a signed request: the query ends in "client_signature", the
// HMAC-SHA256 in lower-case hexadecimal, keyed with the client key, of
// "METHOD\nPATH\nQUERY\nNONCE", QUERY being the raw query before that last parameter.
#ifndef DEVSTORE_REQUEST_SIGNATURE_H
#define DEVSTORE_REQUEST_SIGNATURE_H

#include <httplib.h>

#include <string>

namespace devstore {

class RequestSignature {
public:
  static constexpr const char *kClientKey = "q7Zr2mXw9LkTfB3vH";

  static bool valid(const httplib::Request &request);
  static std::string sign(const std::string &method, const std::string &path, const std::string &query,
                          const std::string &nonce);
};

}  // namespace devstore

#endif
