#include "secret_cipher.h"

#include <fcntl.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>

#include "device_path.h"
#include "lp_log.h"

namespace lumenpress::platform {

namespace {

constexpr int kKeySize = 32;
constexpr int kNonceSize = 12;
constexpr int kTagSize = 16;

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

// The key stays in memory only as long as one call needs it.
struct WipedKey {
  ~WipedKey() { OPENSSL_cleanse(bytes.data(), bytes.size()); }
  std::array<unsigned char, kKeySize> bytes{};
};

bool readKey(WipedKey *key) {
  const std::string path = MapDevicePath(SecretCipher::kKeyPath);
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  ssize_t got = -1;
  unsigned char extra = 0;
  if (fd >= 0) {
    got = ::read(fd, key->bytes.data(), kKeySize);
    if (got == kKeySize && ::read(fd, &extra, 1) != 0) got = -1;
    ::close(fd);
  }
  if (got != kKeySize) LP_LOG(LP_LOG_ERROR, "the device's secret key %s cannot be read", path.c_str());
  return got == kKeySize;
}

const unsigned char *bytesOf(const std::string &text) {
  return reinterpret_cast<const unsigned char *>(text.data());
}

int sizeOf(const std::string &text) {
  return static_cast<int>(text.size());
}

}  // namespace

bool SecretCipher::createKey(const std::string &real_path) {
  if (::access(real_path.c_str(), F_OK) == 0) return true;
  WipedKey key;
  if (RAND_bytes(key.bytes.data(), kKeySize) != 1) return false;
  const std::string temp = real_path + ".new." + std::to_string(getpid());
  const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (fd < 0) return false;
  bool written = ::write(fd, key.bytes.data(), kKeySize) == kKeySize && ::fsync(fd) == 0;
  written = ::close(fd) == 0 && written;
  // Unlike rename, link fails when another first start has put its key in place meanwhile.
  const bool placed = written && (::link(temp.c_str(), real_path.c_str()) == 0 || errno == EEXIST);
  ::unlink(temp.c_str());
  return placed;
}

bool SecretCipher::seal(const std::string &context, const std::string &clear, std::string *sealed) {
  WipedKey key;
  std::string out(kNonceSize + clear.size() + kTagSize, '\0');
  auto *nonce = reinterpret_cast<unsigned char *>(out.data());
  unsigned char *body = nonce + kNonceSize;
  if (!readKey(&key) || RAND_bytes(nonce, kNonceSize) != 1) return false;
  CipherContext cipher(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
  int length = 0;
  const bool done = cipher &&
                    EVP_EncryptInit_ex(cipher.get(), EVP_aes_256_gcm(), nullptr, key.bytes.data(), nonce) == 1 &&
                    EVP_EncryptUpdate(cipher.get(), nullptr, &length, bytesOf(context), sizeOf(context)) == 1 &&
                    EVP_EncryptUpdate(cipher.get(), body, &length, bytesOf(clear), sizeOf(clear)) == 1 &&
                    EVP_EncryptFinal_ex(cipher.get(), body + length, &length) == 1 &&
                    EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_GCM_GET_TAG, kTagSize, body + clear.size()) == 1;
  if (done) *sealed = std::move(out);
  return done;
}

bool SecretCipher::open(const std::string &context, const std::string &sealed, std::string *clear) {
  if (sealed.size() < static_cast<std::size_t>(kNonceSize + kTagSize)) return false;
  WipedKey key;
  if (!readKey(&key)) return false;
  const unsigned char *nonce = bytesOf(sealed);
  const std::size_t size = sealed.size() - kNonceSize - kTagSize;
  std::array<unsigned char, kTagSize> tag{};
  std::copy_n(nonce + kNonceSize + size, kTagSize, tag.begin());
  std::string out(size, '\0');
  auto *body = reinterpret_cast<unsigned char *>(out.data());
  CipherContext cipher(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
  int length = 0;
  const bool done = cipher &&
                    EVP_DecryptInit_ex(cipher.get(), EVP_aes_256_gcm(), nullptr, key.bytes.data(), nonce) == 1 &&
                    EVP_DecryptUpdate(cipher.get(), nullptr, &length, bytesOf(context), sizeOf(context)) == 1 &&
                    EVP_DecryptUpdate(cipher.get(), body, &length, nonce + kNonceSize, static_cast<int>(size)) == 1 &&
                    EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_GCM_SET_TAG, kTagSize, tag.data()) == 1 &&
                    EVP_DecryptFinal_ex(cipher.get(), body + length, &length) == 1;
  if (done) *clear = std::move(out);
  return done;
}

}  // namespace lumenpress::platform
