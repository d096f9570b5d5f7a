// Any bytes through Base64 and hex, both ways: what is encoded decodes to itself, and any text decodes to no more
// than it holds, hex all or nothing.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "serialization_utils.h"

using lumenpress::utilities::SerializationUtils;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string bytes(reinterpret_cast<const char *>(data), size);
  if (SerializationUtils::FromBase64(SerializationUtils::ToBase64(bytes)) != bytes) std::abort();
  if (SerializationUtils::FromHex(SerializationUtils::ToHex(bytes)) != bytes) std::abort();
  if (SerializationUtils::FromBase64(bytes).size() * 4 > bytes.size() * 3) std::abort();
  const std::string unhexed = SerializationUtils::FromHex(bytes);
  if (!unhexed.empty() && unhexed.size() * 2 != bytes.size()) std::abort();
  return 0;
}
