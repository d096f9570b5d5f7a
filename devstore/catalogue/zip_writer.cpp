#include "zip_writer.h"

#include <zlib.h>

#include <vector>

namespace devstore {

namespace {

void put16(std::string *out, uint32_t value) {
  out->push_back(static_cast<char>(value & 0xff));
  out->push_back(static_cast<char>((value >> 8) & 0xff));
}

void put32(std::string *out, uint32_t value) {
  put16(out, value & 0xffff);
  put16(out, value >> 16);
}

// Raw deflate, as ZIP wants it: no zlib header or trailer.
std::string deflateRaw(const std::string &data) {
  z_stream stream{};
  deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
  std::vector<unsigned char> out(deflateBound(&stream, data.size()));
  stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.data()));
  stream.avail_in = static_cast<uInt>(data.size());
  stream.next_out = out.data();
  stream.avail_out = static_cast<uInt>(out.size());
  deflate(&stream, Z_FINISH);
  const size_t size = stream.total_out;
  deflateEnd(&stream);
  return std::string(reinterpret_cast<const char *>(out.data()), size);
}

// The fields that the local header and the directory entry share, from "version needed" on.
std::string commonFields(uint16_t method, uint32_t crc, uint32_t packed, uint32_t size, const std::string &name) {
  std::string fields;
  put16(&fields, 20);
  put16(&fields, 0x0800);  // names are UTF-8
  put16(&fields, method);
  put16(&fields, 0);             // time
  put16(&fields, (1 << 5) | 1);  // 1980-01-01
  put32(&fields, crc);
  put32(&fields, packed);
  put32(&fields, size);
  put16(&fields, static_cast<uint32_t>(name.size()));
  put16(&fields, 0);
  return fields;
}

}  // namespace

void ZipWriter::add(const std::string &name, const std::string &data, bool compress) {
  const uint32_t crc = crc32(0, reinterpret_cast<const Bytef *>(data.data()), static_cast<uInt>(data.size()));
  const std::string packed = compress ? deflateRaw(data) : data;
  const uint16_t method = compress ? 8 : 0;
  const auto offset = static_cast<uint32_t>(archive_.size());
  const std::string fields =
      commonFields(method, crc, static_cast<uint32_t>(packed.size()), static_cast<uint32_t>(data.size()), name);

  put32(&archive_, 0x04034b50);
  archive_ += fields + name + packed;

  put32(&directory_, 0x02014b50);
  put16(&directory_, 20);
  directory_ += fields;
  put16(&directory_, 0);  // comment
  put16(&directory_, 0);  // disk
  put16(&directory_, 0);  // internal attributes
  put32(&directory_, 0);  // external attributes
  put32(&directory_, offset);
  directory_ += name;
  ++count_;
}

std::string ZipWriter::finish() {
  const auto offset = static_cast<uint32_t>(archive_.size());
  archive_ += directory_;
  put32(&archive_, 0x06054b50);
  put16(&archive_, 0);
  put16(&archive_, 0);
  put16(&archive_, count_);
  put16(&archive_, count_);
  put32(&archive_, static_cast<uint32_t>(directory_.size()));
  put32(&archive_, offset);
  put16(&archive_, 0);
  return std::move(archive_);
}

}  // namespace devstore
