// One loaded page of a list.
#ifndef LUMENPRESS_OPDS_FEED_H
#define LUMENPRESS_OPDS_FEED_H

#include <memory>
#include <vector>

#include "opds/c_text.h"
#include "opds/opds_entry.h"

namespace lumenpress::opds {

class Feed {
public:
  // OpenSearch total of the whole list.
  CText total_results;
  std::vector<std::shared_ptr<OPDS::Entry>> entries;
  std::vector<std::shared_ptr<OPDS::Link>> links;
};

}  // namespace lumenpress::opds

#endif
