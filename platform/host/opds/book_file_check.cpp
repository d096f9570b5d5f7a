#include "book_file_check.h"

#include <algorithm>
#include <fstream>

namespace lumenpress::opds {

namespace {

enum class Format { kOther, kZip, kPdf };

constexpr std::size_t kZipEndRecordSize = 22;
// The end record may carry a comment of up to 64 KB after it.
constexpr std::size_t kZipTailSize = kZipEndRecordSize + 0xffff;
constexpr std::size_t kPdfTailSize = 1024;
const char kZipEndSignature[] = "PK\x05\x06";
const char kPdfEnd[] = "%%EOF";

Format formatOf(const std::string &head) {
  if (head.compare(0, 4, "PK\x03\x04") == 0 || head.compare(0, 4, kZipEndSignature) == 0) return Format::kZip;
  return head.compare(0, 5, "%PDF-") == 0 ? Format::kPdf : Format::kOther;
}

bool endsWithZipDirectory(const std::string &tail) {
  if (tail.size() < kZipEndRecordSize) return false;
  for (std::size_t at = tail.size() - kZipEndRecordSize + 1; at-- > 0;) {
    if (tail.compare(at, 4, kZipEndSignature) != 0) continue;
    const std::size_t comment = static_cast<unsigned char>(tail[at + 20]) |
                                static_cast<std::size_t>(static_cast<unsigned char>(tail[at + 21])) << 8;
    if (at + kZipEndRecordSize + comment == tail.size()) return true;
  }
  return false;
}

// Writers may end the file with a line break or padding after the marker.
bool endsWithPdfTrailer(const std::string &tail) {
  const auto last = tail.find_last_not_of(std::string(" \t\r\n\f\0", 6));
  const std::size_t marker = sizeof kPdfEnd - 1;
  return last != std::string::npos && last + 1 >= marker && tail.compare(last + 1 - marker, marker, kPdfEnd) == 0;
}

std::string readAt(std::ifstream &in, std::streamoff offset, std::size_t size) {
  std::string bytes(size, '\0');
  in.seekg(offset);
  in.read(bytes.data(), static_cast<std::streamsize>(size));
  bytes.resize(in ? size : 0);
  return bytes;
}

}  // namespace

bool BookFileCheck::looksWhole(const std::string &path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  const std::streamoff size = in ? static_cast<std::streamoff>(in.tellg()) : 0;
  const Format format = formatOf(readAt(in, 0, std::min<std::size_t>(5, size)));
  if (format == Format::kOther) return true;
  const std::size_t tail_size = std::min<std::size_t>(format == Format::kZip ? kZipTailSize : kPdfTailSize, size);
  const std::string tail = readAt(in, size - static_cast<std::streamoff>(tail_size), tail_size);
  return format == Format::kZip ? endsWithZipDirectory(tail) : endsWithPdfTrailer(tail);
}

}  // namespace lumenpress::opds
