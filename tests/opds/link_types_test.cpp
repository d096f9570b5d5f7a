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

// The numbers are shared with the local store's feeds, so each one is pinned here.
TEST(LinkTypeMapper, TableOfRelations) {
  const RelCase cases[] = {
      {"subsection", kAtom, 1},
      {"alternate", kAtom, 1},
      {"", kAtom, 1},
      {"alternate", "application/atom+xml;type=entry;profile=opds-catalog", 1},
      {"alternate", "Application/Atom+XML ; profile=opds-catalog", 1},
      {"alternate", " application/atom+xml", 1},
      {"alternate", "application/atom+xmlx", 21},
      {"alternate", "text/html", 5},
      {"", "TEXT/HTML; charset=utf-8", 5},
      {"alternate", "", 21},
      {"search", "application/opensearchdescription+xml", 2},
      {"self", kAtom, 3},
      {"related", kAtom, 4},
      {"http://opds-spec.org/featured", kAtom, 6},
      {"next", kAtom, 7},
      {"collection", kAtom, 8},
      {"http://opds-spec.org/image", "image/jpeg", 9},
      {"http://opds-spec.org/image/thumbnail", "image/jpeg", 10},
      {"http://opds-spec.org/acquisition", "application/epub+zip", 11},
      {"start", kAtom, 12},
      {"http://opds-spec.org/acquisition/buy", "text/html", 13},
      {"up", kAtom, 14},
      {"previous", kAtom, 15},
      {"prev", kAtom, 15},
      {"http://opds-spec.org/acquisition/sample", "application/epub+zip", 16},
      {"http://opds-spec.org/acquisition/preview", "application/epub+zip", 16},
      {"preview", "application/epub+zip", 16},
      {"http://opds-spec.org/acquisition/open-access", "application/epub+zip", 17},
      {"http://opds-spec.org/acquisition/borrow", kAtom, 18},
      {"http://opds-spec.org/acquisition/subscribe", "text/html", 18},
      {"http://opds-spec.org/cover", "image/jpeg", 19},
      {"x-stanza-cover-image", "image/jpeg", 19},
      {"http://opds-spec.org/facet", kAtom, 22},
      {"http://opds-spec.org/sort/new", kAtom, 23},
      {"http://opds-spec.org/sort/popular", kAtom, 24},
      {"http://opds-spec.org/recommended", kAtom, 25},
      {"urn:lumenpress:series", kAtom, 26},
      {"http://www.feedbooks.com/opds/facet", kAtom, 21},
      {"http://opds-spec.org/shelf", kAtom, 21},
      {"Subsection", kAtom, 21},
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
      {"application/x-fictionbook+xml", "fb2", "fb2"},
      {"application/fb2+zip", "fb2.zip", "fb2"},
      {"application/x-mobipocket-ebook", "mobi", "mobi"},
      {"image/vnd.djvu", "djvu", "djvu"},
      {"audio/mpeg", "mp3", "mp3"},
      {"audio/x-m4b", "m4b", "m4b"},
      {"application/zip", "zip", "zip"},
      {"application/vnd.adobe.adept+xml", "acsm", "acsm"},
      {"vnd.adobe/adept+xml", "acsm", "acsm"},
      {"text/html; charset=utf-8", "html", "unsupported"},
      {"", "unsupported", "unsupported"},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(MimeTypes::GetExtensionByMime(c.mime), c.extension) << c.mime;
    EXPECT_EQ(MimeTypes::MimeToFormat(c.mime), c.format) << c.mime;
  }
}
