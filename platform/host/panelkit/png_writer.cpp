#include "png_writer.h"

#include <zlib.h>

#include <cstdio>
#include <fstream>

namespace lumenpress::platform {

bool PngWriter::writeGrey(const std::string &path, int width, int height, const std::vector<std::uint8_t> &pixels) {
  if (width <= 0 || height <= 0 || pixels.size() != static_cast<size_t>(width) * height) return false;
  // Each row opens with its filter type; 0 is none.
  std::string raw;
  raw.reserve(pixels.size() + height);
  for (int y = 0; y < height; ++y) {
    raw += '\0';
    raw.append(reinterpret_cast<const char *>(&pixels[static_cast<size_t>(y) * width]), width);
  }
  uLongf size = compressBound(raw.size());
  std::string compressed(size, '\0');
  if (compress2(reinterpret_cast<Bytef *>(&compressed[0]), &size, reinterpret_cast<const Bytef *>(raw.data()),
                raw.size(), Z_BEST_SPEED) != Z_OK) {
    return false;
  }
  compressed.resize(size);

  std::string png("\x89PNG\r\n\x1a\n", 8);
  // Width, height, 8 bits of grey, default compression, filter and no interlace.
  appendChunk(&png, "IHDR", bigEndian(width) + bigEndian(height) + std::string("\x08\x00\x00\x00\x00", 5));
  appendChunk(&png, "IDAT", compressed);
  appendChunk(&png, "IEND", "");

  const std::string partial = path + ".part";
  {
    std::ofstream out(partial, std::ios::binary | std::ios::trunc);
    if (!out.write(png.data(), static_cast<std::streamsize>(png.size()))) return false;
  }
  return std::rename(partial.c_str(), path.c_str()) == 0;
}

void PngWriter::appendChunk(std::string *png, const char *type, const std::string &data) {
  const std::string typed = std::string(type, 4) + data;
  png->append(bigEndian(static_cast<std::uint32_t>(data.size())));
  png->append(typed);
  png->append(bigEndian(crc32(crc32(0, nullptr, 0), reinterpret_cast<const Bytef *>(typed.data()), typed.size())));
}

std::string PngWriter::bigEndian(std::uint32_t value) {
  const char bytes[] = {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
                        static_cast<char>(value)};
  return std::string(bytes, 4);
}

}  // namespace lumenpress::platform
