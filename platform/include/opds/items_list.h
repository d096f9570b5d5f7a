// A list of the catalogue by URL, shared between the library and every model that shows it.
#ifndef LUMENPRESS_OPDS_ITEMS_LIST_H
#define LUMENPRESS_OPDS_ITEMS_LIST_H

#include <memory>
#include <string>
#include <vector>

#include "opds/feed.h"

namespace lumenpress::opds {

class ItemsList {
public:
  explicit ItemsList(const std::string &url) : url(url) {}

  // One feed per loaded page, in loading order.
  const std::vector<std::shared_ptr<Feed>> &Feeds() const { return feeds_; }
  std::vector<std::shared_ptr<Feed>> &Feeds() { return feeds_; }
  const std::string &getTitle() const { return title_; }
  void setTitle(const std::string &title) { title_ = title; }

  bool loading = false;
  // A model shows the list anew instead of appending rows.
  bool reset_required = false;
  // A model fetches the list again before reading it.
  bool stale = false;
  std::vector<std::shared_ptr<OPDS::Entry>> entries;
  // What models show while filter is not empty.
  std::vector<std::shared_ptr<OPDS::Entry>> filtered_entries;
  std::string filter;
  // The key of the list and the base of its relative links.
  std::string url;

private:
  std::vector<std::shared_ptr<Feed>> feeds_;
  std::string title_;
};

}  // namespace lumenpress::opds

#endif
