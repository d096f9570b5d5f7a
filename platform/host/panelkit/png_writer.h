// Writes grey pictures as PNG files, whole or not at all.
#ifndef LUMENPRESS_HOST_PNG_WRITER_H
#define LUMENPRESS_HOST_PNG_WRITER_H

#include <cstdint>
#include <string>
#include <vector>

namespace lumenpress::platform {

class PngWriter {
public:
  // One byte a pixel, rows top down; false when the file could not be written.
  static bool writeGrey(const std::string &path, int width, int height, const std::vector<std::uint8_t> &pixels);

private:
  static void appendChunk(std::string *png, const char *type, const std::string &data);
  static std::string bigEndian(std::uint32_t value);
};

}  // namespace lumenpress::platform

#endif
