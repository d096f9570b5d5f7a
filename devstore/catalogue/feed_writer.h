// Writes one OPDS 1.2 Atom feed: the feed's own links, paging and facets, and entries
// with their links, prices and the store's own elements.
#ifndef DEVSTORE_FEED_WRITER_H
#define DEVSTORE_FEED_WRITER_H

#include <pugixml.hpp>

#include <string>

namespace devstore {

class FeedWriter {
public:
  static constexpr const char *kNavigationType = "application/atom+xml;profile=opds-catalog;kind=navigation";
  static constexpr const char *kAcquisitionType = "application/atom+xml;profile=opds-catalog;kind=acquisition";
  static constexpr const char *kEntryType = "application/atom+xml;type=entry;profile=opds-catalog";

  FeedWriter(const std::string &id, const std::string &title, const std::string &selfHref, bool acquisition);

  void link(const std::string &rel, const std::string &type, const std::string &href, const std::string &title = "");
  void facet(const std::string &group, const std::string &title, const std::string &href, bool active);
  // opensearch:totalResults, itemsPerPage and startIndex of page `page` (from 1).
  void paging(int total, int page, int perPage);

  pugi::xml_node entry(const std::string &id, const std::string &title);
  static pugi::xml_node link(pugi::xml_node entry, const std::string &rel, const std::string &type,
                             const std::string &href, const std::string &title = "");
  static void text(pugi::xml_node parent, const char *name, const std::string &value);
  // Atom text that holds HTML, escaped as Atom's type="html" wants it.
  static void html(pugi::xml_node entry, const char *name, const std::string &value);
  static void author(pugi::xml_node entry, const std::string &name, const std::string &uri);
  static void category(pugi::xml_node entry, const std::string &term, const std::string &label);
  static void price(pugi::xml_node link, const std::string &currency, double value, double oldValue, int minBooks = 0,
                    int discount = 0);
  // Nested indirect acquisitions, outermost first.
  static void indirect(pugi::xml_node link, std::initializer_list<const char *> types);

  std::string xml() const;

private:
  pugi::xml_document document_;
  pugi::xml_node feed_;
};

}  // namespace devstore

#endif
