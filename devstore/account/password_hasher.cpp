#include "password_hasher.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <sstream>
#include <vector>

#include "serialization_utils.h"

namespace devstore {

namespace {

constexpr int kIterations = 20000;
constexpr int kLength = 32;

using lumenpress::utilities::SerializationUtils;

std::string derive(const std::string &password, const std::string &salt, int iterations) {
  std::string out(kLength, '\0');
  PKCS5_PBKDF2_HMAC(password.data(), static_cast<int>(password.size()),
                    reinterpret_cast<const unsigned char *>(salt.data()), static_cast<int>(salt.size()), iterations,
                    EVP_sha256(), kLength, reinterpret_cast<unsigned char *>(out.data()));
  return out;
}

std::vector<std::string> split(const std::string &text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
  return parts;
}

}  // namespace

std::string PasswordHasher::hash(const std::string &password) {
  std::string salt(16, '\0');
  RAND_bytes(reinterpret_cast<unsigned char *>(salt.data()), static_cast<int>(salt.size()));
  return "pbkdf2-sha256$" + std::to_string(kIterations) + "$" + SerializationUtils::ToHex(salt) + "$" +
         SerializationUtils::ToHex(derive(password, salt, kIterations));
}

bool PasswordHasher::verify(const std::string &password, const std::string &stored) {
  const auto parts = split(stored, '$');
  if (parts.size() != 4 || parts[0] != "pbkdf2-sha256") return false;
  const int iterations = std::atoi(parts[1].c_str());
  const std::string expected = SerializationUtils::FromHex(parts[3]);
  if (iterations <= 0 || expected.size() != kLength) return false;
  const std::string actual = derive(password, SerializationUtils::FromHex(parts[2]), iterations);
  return CRYPTO_memcmp(actual.data(), expected.data(), kLength) == 0;
}

}  // namespace devstore
