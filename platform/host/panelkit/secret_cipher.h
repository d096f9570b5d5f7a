// Enciphers the secrets of configuration files with a key of this device's own (AES-256-GCM):
// a copied file gives nothing away, and a value changed by hand is noticed.
#ifndef LUMENPRESS_HOST_SECRET_CIPHER_H
#define LUMENPRESS_HOST_SECRET_CIPHER_H

#include <string>

namespace lumenpress::platform {

class SecretCipher {
public:
  // Device path of the key, readable by its owner only.
  static constexpr const char kKeyPath[] = "/mnt/secure/secrets.key";

  // Makes the key at `real_path` when there is none; an existing key is never replaced, so two
  // first starts at once agree on one. Logs nothing: the log sink may not be ready yet.
  static bool createKey(const std::string &real_path);

  // `context` is bound into the result, so a value moved to another key no longer opens.
  // Binary output, false when the device's key cannot be read.
  static bool seal(const std::string &context, const std::string &clear, std::string *sealed);
  // False for a value that was not sealed with this device's key and context.
  static bool open(const std::string &context, const std::string &sealed, std::string *clear);
};

}  // namespace lumenpress::platform

#endif
