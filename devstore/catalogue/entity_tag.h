// The entity tag of an answer: a 64-bit hash of its body, taken eight bytes at a time.
#ifndef DEVSTORE_ENTITY_TAG_H
#define DEVSTORE_ENTITY_TAG_H

#include <string>

namespace devstore {

class EntityTag {
public:
  // Quoted, as the ETag header carries it.
  static std::string of(const std::string &body);
};

}  // namespace devstore

#endif
