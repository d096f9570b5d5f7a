// AES-128-CBC with PKCS padding for the consent store, in Base64. Every failure gives an
// empty text, so that an unreadable store reads as an empty one.
#ifndef LUMENPRESS_LEGAL_CIPHER_H
#define LUMENPRESS_LEGAL_CIPHER_H

#include <string>

namespace lumenpress::legal {

class LegalCipher {
public:
  static constexpr size_t kKeySize = 16;

  static std::string encrypt(const std::string &plain, const std::string &key, const std::string &iv);
  static std::string decrypt(const std::string &base64, const std::string &key, const std::string &iv);
  // kKeySize bytes from "/dev/urandom"; empty when it cannot be read.
  static std::string randomBytes();
};

}  // namespace lumenpress::legal

#endif
