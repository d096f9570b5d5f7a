// Base of the catalogue's records that are kept in owning pointer containers.
#ifndef LUMENPRESS_OPDS_OBJECT_H
#define LUMENPRESS_OPDS_OBJECT_H

namespace lumenpress::opds::OPDS {

class Object {
public:
  virtual ~Object() = default;
};

}  // namespace lumenpress::opds::OPDS

namespace OPDS = lumenpress::opds::OPDS;

#endif
