// Reads one OPDS 1.2 Atom document into the catalogue's records.
#ifndef LUMENPRESS_OPDS_FEED_PARSER_H
#define LUMENPRESS_OPDS_FEED_PARSER_H

#include <cstddef>
#include <memory>
#include <string>

#include "opds/feed.h"
#include "xml_namespace_scope.h"

namespace lumenpress::opds {

class FeedParser {
public:
  // Fills feed and title from an Atom feed, or from a document whose root is one entry (title is then the entry's).
  // Hrefs stay as written, relative ones too. Returns false, with error saying where and why, for a document that
  // is not XML or whose root is no Atom feed or entry; feed is then left as it was.
  static bool Parse(const char *data, size_t size, const std::string &feed_url, Feed *feed, std::string *title,
                    std::string *error);

private:
  using EntryReader = void (FeedParser::*)(const pugi::xml_node &element, OPDS::Entry *entry);
  struct EntryElement {
    XmlVocabulary vocabulary;
    const char *name;
    EntryReader read;
  };
  static const EntryElement kEntryElements[];

  void ReadFeed(const pugi::xml_node &element, Feed *feed, std::string *title);
  std::shared_ptr<OPDS::Entry> ReadEntry(const pugi::xml_node &element);
  std::shared_ptr<OPDS::Link> ReadLink(const pugi::xml_node &element);
  void ReadPrice(const pugi::xml_node &element, OPDS::Link *link);
  void ReadIndirectAcquisitions(const pugi::xml_node &element, OPDS::Link *link);
  pugi::xml_node NextIndirectAcquisition(pugi::xml_node node, size_t *declared);

  void ReadId(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadTitle(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadAuthor(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadSummary(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadContent(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadCategory(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadEntryLink(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadPublished(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadIssued(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadLanguage(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadIdentifier(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadPublisher(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadExtent(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadKind(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadStock(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadRating(const pugi::xml_node &element, OPDS::Entry *entry);
  void ReadGroupedImages(const pugi::xml_node &element, OPDS::Entry *entry);

  XmlNamespaceScope scope_;
};

}  // namespace lumenpress::opds

#endif
