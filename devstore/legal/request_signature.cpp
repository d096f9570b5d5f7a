#include "request_signature.h"

#include <openssl/crypto.h>
#include <openssl/hmac.h>

#include <cstdio>

namespace devstore {

std::string RequestSignature::sign(const std::string &method, const std::string &path, const std::string &query,
                                   const std::string &nonce) {
  const std::string message = method + "\n" + path + "\n" + query + "\n" + nonce;
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  const std::string key = kClientKey;
  HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()), reinterpret_cast<const unsigned char *>(message.data()),
       message.size(), digest, &length);
  std::string hex;
  char byte[3];
  for (unsigned int i = 0; i < length; ++i) {
    std::snprintf(byte, sizeof byte, "%02x", digest[i]);
    hex += byte;
  }
  return hex;
}

bool RequestSignature::valid(const httplib::Request &request) {
  const size_t mark = request.target.find('?');
  if (mark == std::string::npos) return false;
  const std::string query = request.target.substr(mark + 1);
  const std::string last = "client_signature=";
  const size_t at = query.rfind(last);
  if (at == std::string::npos || (at != 0 && query[at - 1] != '&')) return false;
  const std::string given = query.substr(at + last.size());
  const std::string signed_part = at == 0 ? std::string() : query.substr(0, at - 1);
  const std::string expected =
      sign(request.method, request.target.substr(0, mark), signed_part, request.get_param_value("nonce"));
  return given.size() == expected.size() && CRYPTO_memcmp(given.data(), expected.data(), given.size()) == 0;
}

}  // namespace devstore
