#include "entity_tag.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace devstore {

namespace {

constexpr uint64_t kMultiplier = 0x9e3779b97f4a7c15ULL;

uint64_t rotated(uint64_t value, int bits) {
  return (value << bits) | (value >> (64 - bits));
}

// Spreads every bit of the hash over all of them.
uint64_t finished(uint64_t hash) {
  hash ^= hash >> 33;
  hash *= 0xff51afd7ed558ccdULL;
  hash ^= hash >> 33;
  hash *= 0xc4ceb9fe1a85ec53ULL;
  return hash ^ (hash >> 33);
}

}  // namespace

// Each step is one-to-one in the hash so far and in the word it takes: bodies of one length that
// differ within a single word of eight bytes never share a tag.
std::string EntityTag::of(const std::string &body) {
  uint64_t hash = body.size();
  size_t at = 0;
  for (; at + sizeof(uint64_t) <= body.size(); at += sizeof(uint64_t)) {
    uint64_t word = 0;
    std::memcpy(&word, body.data() + at, sizeof word);
    hash = (rotated(hash, 23) ^ word) * kMultiplier;
  }
  uint64_t tail = 0;
  std::memcpy(&tail, body.data() + at, body.size() - at);
  hash = (rotated(hash, 23) ^ tail) * kMultiplier;
  char text[24];
  std::snprintf(text, sizeof text, "\"%016llx\"", static_cast<unsigned long long>(finished(hash)));
  return text;
}

}  // namespace devstore
