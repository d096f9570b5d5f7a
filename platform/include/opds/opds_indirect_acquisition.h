// What an acquisition link delivers behind its own media type (a token for a book, say).
#ifndef LUMENPRESS_OPDS_INDIRECT_ACQUISITION_H
#define LUMENPRESS_OPDS_INDIRECT_ACQUISITION_H

#include <string>

#include "opds/opds_object.h"

namespace lumenpress::opds::OPDS {

class IndirectAcquisition : public Object {
public:
  std::string mime;
};

}  // namespace lumenpress::opds::OPDS

#endif
