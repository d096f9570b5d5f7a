#include "serialization_utils.h"

#include <array>
#include <cstdint>

namespace lumenpress::utilities {

namespace {

const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::array<int8_t, 256> decodeTable() {
  std::array<int8_t, 256> table{};
  table.fill(-1);
  for (int i = 0; i < 64; ++i) table[static_cast<unsigned char>(kAlphabet[i])] = static_cast<int8_t>(i);
  table['-'] = 62;
  table['_'] = 63;
  return table;
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

std::string SerializationUtils::ToBase64(const std::string &data) {
  std::string out;
  out.reserve((data.size() + 2) / 3 * 4);
  size_t i = 0;
  for (; i + 2 < data.size(); i += 3) {
    const uint32_t n = (uint8_t(data[i]) << 16) | (uint8_t(data[i + 1]) << 8) | uint8_t(data[i + 2]);
    out += {kAlphabet[n >> 18], kAlphabet[(n >> 12) & 63], kAlphabet[(n >> 6) & 63], kAlphabet[n & 63]};
  }
  if (i + 1 == data.size()) {
    const uint32_t n = uint8_t(data[i]) << 16;
    out += {kAlphabet[n >> 18], kAlphabet[(n >> 12) & 63], '=', '='};
  } else if (i + 2 == data.size()) {
    const uint32_t n = (uint8_t(data[i]) << 16) | (uint8_t(data[i + 1]) << 8);
    out += {kAlphabet[n >> 18], kAlphabet[(n >> 12) & 63], kAlphabet[(n >> 6) & 63], '='};
  }
  return out;
}

std::string SerializationUtils::FromBase64(const std::string &text) {
  static const auto table = decodeTable();
  size_t length = text.size();
  while (length > 0 && text[length - 1] == '=') --length;
  const size_t padding = text.size() - length;
  // Padding, when present, must complete the last group of four.
  if (padding > 2 || length % 4 == 1 || (padding > 0 && text.size() % 4 != 0)) return {};
  std::string out;
  out.reserve(length * 3 / 4);
  uint32_t buffer = 0;
  int bits = 0;
  for (size_t i = 0; i < length; ++i) {
    const int value = table[static_cast<unsigned char>(text[i])];
    if (value < 0) return {};
    buffer = (buffer << 6) | static_cast<uint32_t>(value);
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      out += static_cast<char>((buffer >> bits) & 0xff);
    }
  }
  return out;
}

std::string SerializationUtils::ToHex(const std::string &data) {
  static const char digits[] = "0123456789abcdef";
  std::string out;
  out.reserve(data.size() * 2);
  for (unsigned char c : data) {
    out += digits[c >> 4];
    out += digits[c & 15];
  }
  return out;
}

std::string SerializationUtils::FromHex(const std::string &text) {
  if (text.size() % 2 != 0) return {};
  std::string out;
  out.reserve(text.size() / 2);
  for (size_t i = 0; i < text.size(); i += 2) {
    const int high = hexValue(text[i]);
    const int low = hexValue(text[i + 1]);
    if (high < 0 || low < 0) return {};
    out += static_cast<char>(high << 4 | low);
  }
  return out;
}

}  // namespace lumenpress::utilities
