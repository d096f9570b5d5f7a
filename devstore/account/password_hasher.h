// Passwords are kept as salted PBKDF2 hashes, never as they were typed.
#ifndef DEVSTORE_PASSWORD_HASHER_H
#define DEVSTORE_PASSWORD_HASHER_H

#include <string>

namespace devstore {

class PasswordHasher {
public:
  // "pbkdf2-sha256$<iterations>$<salt hex>$<hash hex>" with a fresh random salt.
  static std::string hash(const std::string &password);
  static bool verify(const std::string &password, const std::string &stored);
};

}  // namespace devstore

#endif
