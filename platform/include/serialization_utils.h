// Text encodings used for tokens, keys and command-line arguments.
#ifndef LUMENPRESS_SERIALIZATION_UTILS_H
#define LUMENPRESS_SERIALIZATION_UTILS_H

#include <string>

namespace lumenpress::utilities {

class SerializationUtils {
public:
  static std::string ToBase64(const std::string &data);
  // Standard or URL-safe alphabet, padding optional; empty for malformed input.
  static std::string FromBase64(const std::string &text);
  // Lower-case hexadecimal.
  static std::string ToHex(const std::string &data);
  // Either case; empty for an odd length or a non-hex character.
  static std::string FromHex(const std::string &text);
};

}  // namespace lumenpress::utilities

#endif
