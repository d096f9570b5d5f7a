#include "link_type_mapper.h"

#include <string_view>

#include "mime_types.h"
#include "opds/opds_names.h"

namespace lumenpress::opds {

namespace {

using Link = OPDS::Link;

struct Relation {
  std::string_view rel;
  Link::LinkType type;
};

constexpr Relation kRelations[] = {
    {"subsection", Link::kSubsection},
    {"search", Link::kSearch},
    {"self", Link::kSelf},
    {"related", Link::kRelated},
    {"http://opds-spec.org/featured", Link::kFeatured},
    {"next", Link::kNext},
    {"collection", Link::kCollection},
    {"http://opds-spec.org/image", Link::kImage},
    {"http://opds-spec.org/image/thumbnail", Link::kThumbnail},
    {"http://opds-spec.org/acquisition", Link::kAcquisition},
    {"start", Link::kStart},
    {"http://opds-spec.org/acquisition/buy", Link::kBuy},
    {"up", Link::kUp},
    {"previous", Link::kPrevious},
    {"prev", Link::kPrevious},
    {"http://opds-spec.org/acquisition/sample", Link::kSample},
    {"http://opds-spec.org/acquisition/preview", Link::kSample},
    {"preview", Link::kSample},
    {"http://opds-spec.org/acquisition/open-access", Link::kOpenAccess},
    {"http://opds-spec.org/acquisition/borrow", Link::kBorrow},
    {"http://opds-spec.org/acquisition/subscribe", Link::kBorrow},
    {"http://opds-spec.org/cover", Link::kCover},
    {"x-stanza-cover-image", Link::kCover},
    {"http://opds-spec.org/facet", Link::kFacet},
    {"http://opds-spec.org/sort/new", Link::kSortNew},
    {"http://opds-spec.org/sort/popular", Link::kSortPopular},
    {"http://opds-spec.org/recommended", Link::kRecommended},
    {names::kSeriesRel, Link::kSeries},
};

Link::LinkType AlternateType(const std::string &mime) {
  if (MimeTypes::IsAtom(mime)) return Link::kSubsection;
  if (MimeTypes::HasBaseType(mime, "text/html")) return Link::kAlternateHtml;
  return Link::kOther;
}

}  // namespace

OPDS::Link::LinkType LinkTypeMapper::Map(const std::string &rel, const std::string &mime) {
  if (rel.empty() || rel == "alternate") return AlternateType(mime);
  for (const Relation &known : kRelations) {
    if (rel == known.rel) return known.type;
  }
  return Link::kOther;
}

}  // namespace lumenpress::opds
