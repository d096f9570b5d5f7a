// The type of a catalogue link, from its relation and media type; the local store uses the same numbers.
#ifndef LUMENPRESS_OPDS_LINK_TYPE_MAPPER_H
#define LUMENPRESS_OPDS_LINK_TYPE_MAPPER_H

#include <string>

#include "opds/opds_link.h"

namespace lumenpress::opds {

class LinkTypeMapper {
public:
  // An empty rel is Atom's default, "alternate"; an unknown one is kOther.
  static OPDS::Link::LinkType Map(const std::string &rel, const std::string &mime);
};

}  // namespace lumenpress::opds

#endif
