// A link of a feed or an entry, typed by its relation.
#ifndef LUMENPRESS_OPDS_LINK_H
#define LUMENPRESS_OPDS_LINK_H

#include <boost/ptr_container/ptr_vector.hpp>
#include <string>

#include "opds/opds_indirect_acquisition.h"
#include "opds/opds_price.h"

namespace lumenpress::opds::OPDS {

class Link {
public:
  // The relation of a link; numbers shared with the local store's feeds.
  using LinkType = int;
  static constexpr LinkType kSubsection = 1;
  static constexpr LinkType kSearch = 2;
  static constexpr LinkType kSelf = 3;
  static constexpr LinkType kRelated = 4;
  static constexpr LinkType kAlternateHtml = 5;
  static constexpr LinkType kFeatured = 6;
  static constexpr LinkType kNext = 7;
  static constexpr LinkType kCollection = 8;
  static constexpr LinkType kImage = 9;
  static constexpr LinkType kThumbnail = 10;
  static constexpr LinkType kAcquisition = 11;
  static constexpr LinkType kStart = 12;
  static constexpr LinkType kBuy = 13;
  static constexpr LinkType kUp = 14;
  static constexpr LinkType kPrevious = 15;
  static constexpr LinkType kSample = 16;
  static constexpr LinkType kOpenAccess = 17;
  static constexpr LinkType kBorrow = 18;
  static constexpr LinkType kCover = 19;
  static constexpr LinkType kOther = 21;
  static constexpr LinkType kFacet = 22;
  static constexpr LinkType kSortNew = 23;
  static constexpr LinkType kSortPopular = 24;
  static constexpr LinkType kRecommended = 25;
  static constexpr LinkType kSeries = 26;

  LinkType type = kOther;
  std::string title;
  // May be relative to the feed's URL.
  std::string href;
  std::string mime;
  std::string rel;
  // Short name of the linked file's format; "acsm" for a token.
  std::string format;
  std::string facet_group;
  // The facet in force.
  bool active = false;
  boost::ptr_vector<Price> prices;
  boost::ptr_vector<IndirectAcquisition> indirect_acquisitions;
};

}  // namespace lumenpress::opds::OPDS

#endif
