// One item of a feed: a book, an audio book, a collection or a navigation row.
#ifndef LUMENPRESS_OPDS_ENTRY_H
#define LUMENPRESS_OPDS_ENTRY_H

#include <memory>
#include <string>
#include <vector>

#include "opds/c_text.h"
#include "opds/opds_grouped_img.h"
#include "opds/opds_link.h"

namespace lumenpress::opds::OPDS {

class Author {
public:
  std::string name;
  std::string uri;
};

class Content {
public:
  // HTML allowed.
  std::string text;
};

class Category {
public:
  std::string term;
  std::string label;
};

class Entry {
public:
  std::string id;
  std::string title;
  // Three-letter code.
  std::string language;
  // May hold "ISBN:" and the number.
  std::string identifier;
  // May hold HTML.
  CText publisher;
  // HTML allowed.
  std::string summary;
  // Number of pages; a unit may follow a blank.
  std::string extent;
  CText rating;
  // "audio" for an audio book; holds "grouped" for a collection.
  std::string type;
  // "0" when the item cannot be bought.
  std::string in_stock;
  // "%Y-%m-%d %H:%M:%S".
  std::string published;
  std::shared_ptr<Author> author;
  std::vector<std::shared_ptr<Link>> links;
  std::shared_ptr<Content> content;
  std::vector<std::shared_ptr<Category>> categories;
  std::shared_ptr<GroupedImg> grouped_img;

  // The first link of that type, or null.
  std::shared_ptr<Link> GetLinkByType(Link::LinkType type) const;
  // The entry's own navigation link, or null.
  std::shared_ptr<Link> GetGoLink() const;
  // Prices of the buying link as text; "0" for no old price.
  std::string GetPrice() const;
  std::string GetOldPrice() const;
  std::string GetPriceWithDot() const;
  std::string GetOldPriceWithDot() const;
  double GetPriceDouble() const;
  std::string GetCurrencyCode() const;
};

}  // namespace lumenpress::opds::OPDS

#endif
