#include "signature.h"

#include <openssl/hmac.h>
#include <openssl/rand.h>

#include "serialization_utils.h"

namespace lumenpress::utilities {

namespace {

// The path and the query of a URL as they go out, without scheme and host.
void splitUrl(const std::string &url, std::string *path, std::string *query) {
  const size_t scheme = url.find("://");
  const size_t start = url.find('/', scheme == std::string::npos ? 0 : scheme + 3);
  const std::string rest = start == std::string::npos ? "/" : url.substr(start);
  const size_t mark = rest.find('?');
  *path = rest.substr(0, mark);
  *query = mark == std::string::npos ? std::string() : rest.substr(mark + 1);
}

}  // namespace

std::string Signature::GenerateNonce() {
  unsigned char bytes[16];
  if (RAND_bytes(bytes, sizeof bytes) != 1) return {};
  return SerializationUtils::ToHex(std::string(reinterpret_cast<const char *>(bytes), sizeof bytes));
}

// HMAC-SHA256, keyed with the client key, over "METHOD\nPATH\nQUERY\nNONCE", the query as sent
// and in its order; lower-case hexadecimal. The legal service checks it the same way.
std::string Signature::CreateSignature(const HttpRequest &request, const std::string &nonce,
                                       const std::string &client_key) {
  std::string path;
  std::string query;
  splitUrl(request.encoded_url(), &path, &query);
  const std::string message = request.method() + "\n" + path + "\n" + query + "\n" + nonce;
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (!HMAC(EVP_sha256(), client_key.data(), static_cast<int>(client_key.size()),
            reinterpret_cast<const unsigned char *>(message.data()), message.size(), digest, &length)) {
    return {};
  }
  return SerializationUtils::ToHex(std::string(reinterpret_cast<const char *>(digest), length));
}

}  // namespace lumenpress::utilities
