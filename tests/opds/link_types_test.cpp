#include <gtest/gtest.h>

#include "link_type_mapper.h"
#include "mime_types.h"

using lumenpress::opds::LinkTypeMapper;
using lumenpress::opds::MimeTypes;
using Link = lumenpress::opds::OPDS::Link;

namespace {

constexpr char kAtom[] = "application/atom+xml;profile=opds-catalog;kind=navigation";

struct RelCase {
  const char *rel;
  const char *mime;
  Link::LinkType expected;
};

}  // namespace

// A relation maps through a plain lookup; these are the cases with more to them: the type decides
// an alternate link, several names share a type, and unknown or miscased names are others.
TEST(LinkTypeMapper, AlternatesAliasesAndUnknownRelations) {
  const RelCase cases[] = {
      {"", kAtom, Link::kSubsection},
      {"alternate", kAtom, Link::kSubsection},
      {"alternate", "application/atom+xml;type=entry;profile=opds-catalog", Link::kSubsection},
      {"alternate", "Application/Atom+XML ; profile=opds-catalog", Link::kSubsection},
      {"alternate", " application/atom+xml", Link::kSubsection},
      {"alternate", "application/atom+xmlx", Link::kOther},
      {"alternate", "text/html", Link::kAlternateHtml},
      {"", "TEXT/HTML; charset=utf-8", Link::kAlternateHtml},
      {"alternate", "", Link::kOther},
      {"prev", kAtom, Link::kPrevious},
      {"http://opds-spec.org/acquisition/preview", "application/epub+zip", Link::kSample},
      {"preview", "application/epub+zip", Link::kSample},
      {"http://opds-spec.org/acquisition/subscribe", "text/html", Link::kBorrow},
      {"x-stanza-cover-image", "image/jpeg", Link::kCover},
      {"urn:lumenpress:series", kAtom, Link::kSeries},
      {"http://www.feedbooks.com/opds/facet", kAtom, Link::kOther},
      {"http://opds-spec.org/shelf", kAtom, Link::kOther},
      {"Subsection", kAtom, Link::kOther},
  };
  for (const RelCase &c : cases) {
    EXPECT_EQ(LinkTypeMapper::Map(c.rel, c.mime), c.expected) << "rel \"" << c.rel << "\" type \"" << c.mime << "\"";
  }
}

TEST(MimeTypes, ExtensionsAndFormats) {
  struct Case {
    const char *mime;
    const char *extension;
    const char *format;
  };
  const Case cases[] = {
      {"application/epub+zip", "epub", "epub"},
      {"Application/EPUB+zip; charset=binary", "epub", "epub"},
      {"application/fb2+zip", "fb2.zip", "fb2"},
      {"vnd.adobe/adept+xml", "acsm", "acsm"},
      {"text/html; charset=utf-8", "html", "unsupported"},
      {"", "unsupported", "unsupported"},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(MimeTypes::GetExtensionByMime(c.mime), c.extension) << c.mime;
    EXPECT_EQ(MimeTypes::MimeToFormat(c.mime), c.format) << c.mime;
  }
}
