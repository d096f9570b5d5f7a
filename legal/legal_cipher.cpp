#include "legal_cipher.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <vector>

#include "serialization_utils.h"

using lumenpress::utilities::SerializationUtils;

namespace lumenpress::legal {

namespace {

using Context = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

// The buffer holds the user's data; it is wiped before it goes.
struct WipedBuffer {
  explicit WipedBuffer(size_t size) : bytes(size) {}
  ~WipedBuffer() { OPENSSL_cleanse(bytes.data(), bytes.size()); }
  unsigned char *data() { return bytes.data(); }
  std::vector<unsigned char> bytes;
};

const unsigned char *bytes(const std::string &text) {
  return reinterpret_cast<const unsigned char *>(text.data());
}

bool usable(const std::string &key, const std::string &iv) {
  return key.size() == LegalCipher::kKeySize && iv.size() == LegalCipher::kKeySize;
}

}  // namespace

std::string LegalCipher::encrypt(const std::string &plain, const std::string &key, const std::string &iv) {
  if (!usable(key, iv)) return {};
  Context context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
  if (!context) {
    std::fprintf(stderr, "********** LegalData data_encrypt EVP_CIPHER_CTX_new failed\n");
    return {};
  }
  if (EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, bytes(key), bytes(iv)) != 1) {
    std::fprintf(stderr, "********** LegalData data_encrypt EVP_EncryptInit_ex failed\n");
    return {};
  }
  WipedBuffer out(plain.size() + EVP_MAX_BLOCK_LENGTH);
  int written = 0;
  if (EVP_EncryptUpdate(context.get(), out.data(), &written, bytes(plain), static_cast<int>(plain.size())) != 1) {
    std::fprintf(stderr, "********** LegalData data_encrypt EVP_EncryptUpdate failed\n");
    return {};
  }
  int last = 0;
  if (EVP_EncryptFinal_ex(context.get(), out.data() + written, &last) != 1) {
    std::fprintf(stderr, "********** LegalData data_encrypt EVP_EncryptFinal_ex failed\n");
    return {};
  }
  return SerializationUtils::ToBase64(std::string(reinterpret_cast<const char *>(out.data()), written + last));
}

std::string LegalCipher::decrypt(const std::string &base64, const std::string &key, const std::string &iv) {
  const std::string cipher = SerializationUtils::FromBase64(base64);
  if (!usable(key, iv) || cipher.empty()) return {};
  Context context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
  if (!context) {
    std::fprintf(stderr, "********** LegalData data_decrypt EVP_CIPHER_CTX_new failed\n");
    return {};
  }
  if (EVP_DecryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, bytes(key), bytes(iv)) != 1) {
    std::fprintf(stderr, "********** LegalData data_decrypt EVP_DecryptInit_ex failed\n");
    return {};
  }
  WipedBuffer out(cipher.size() + EVP_MAX_BLOCK_LENGTH);
  int written = 0;
  if (EVP_DecryptUpdate(context.get(), out.data(), &written, bytes(cipher), static_cast<int>(cipher.size())) != 1) {
    std::fprintf(stderr, "********** LegalData data_decrypt EVP_DecryptUpdate failed\n");
    return {};
  }
  int last = 0;
  if (EVP_DecryptFinal_ex(context.get(), out.data() + written, &last) != 1) {
    std::fprintf(stderr, "********** LegalData data_decrypt EVP_DecryptFinal_ex failed\n");
    return {};
  }
  return std::string(reinterpret_cast<const char *>(out.data()), written + last);
}

std::string LegalCipher::randomBytes() {
  std::ifstream random("/dev/urandom", std::ios::binary);
  std::string key(kKeySize, '\0');
  if (!random.read(key.data(), static_cast<std::streamsize>(key.size()))) return {};
  return key;
}

}  // namespace lumenpress::legal
