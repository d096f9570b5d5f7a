// The OPDS feeds of one store, as they lie under "<store>/lpress/opds/". Links between
// them are relative to that folder, so every feed of a store resolves against any other.
#ifndef DEVSTORE_STORE_FEEDS_H
#define DEVSTORE_STORE_FEEDS_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "catalogue.h"
#include "feed_writer.h"
#include "records.h"

namespace devstore {

class StoreFeeds {
public:
  StoreFeeds(const Catalogue *catalogue, StoreRecord store);

  // The root of e-books ("ebook") or of audio books ("audio"): one entry per row.
  std::string home(const FeedParams &params) const;
  std::string genres(const FeedParams &params) const;
  // The lists that home rows open: "popular", "new", "free", "weekbook", "weekseries", "collections".
  std::optional<std::string> list(const std::string &name, const FeedParams &params) const;
  std::optional<std::string> genre(const std::string &slug, const FeedParams &params) const;
  std::optional<std::string> item(long long id) const;
  std::optional<std::string> related(long long id, const FeedParams &params) const;
  std::optional<std::string> itemGenres(long long id) const;
  std::optional<std::string> series(long long id, const FeedParams &params) const;
  std::optional<std::string> collection(long long id) const;
  std::optional<std::string> author(long long id, const FeedParams &params) const;
  std::string search(const std::string &terms, const FeedParams &params) const;
  std::string purchased(long long customerId, const FeedParams &params) const;
  std::string wishlist(long long customerId, const FeedParams &params) const;
  std::string openSearchDescription() const;

  // Where a store's feeds, covers and files lie, for links that leave the feed folder.
  std::string feedPath(const std::string &name) const;
  static std::string coverPath(long long bookId);

private:
  using Query = std::vector<std::pair<std::string, std::string>>;
  struct HomeRow {
    std::string id;
    std::string title;
    std::string href;
  };

  // Few enough that the e-book home needs a second page, as a big store's does.
  static constexpr int kHomeRowsPerPage = 6;

  std::vector<HomeRow> homeRows(const FeedParams &params) const;

  std::string bookList(const std::string &id, const std::string &title, const std::string &path, const Query &query,
                       const BookQuery &books, const FeedParams &params, bool owned = false) const;
  void addBook(FeedWriter *feed, const BookRecord &book, bool owned) const;
  void addBookLinks(pugi::xml_node entry, const BookRecord &book, bool owned) const;
  void addAcquisition(pugi::xml_node entry, const BookRecord &book, bool owned) const;
  void addCollection(FeedWriter *feed, const CollectionRecord &collection, const FeedParams &params) const;
  void addRow(FeedWriter *feed, const std::string &id, const std::string &title, const std::string &href) const;
  void addSearchLinks(FeedWriter *feed) const;
  void addFacets(FeedWriter *feed, const std::string &path, const Query &query, const FeedParams &params) const;
  // The OpenSearch counts and the next, previous and first links.
  void addPages(FeedWriter *feed, const std::string &path, const Query &query, const FeedParams &params, int total,
                int perPage) const;
  std::string feedId(const std::string &name) const;

  // Relative to the folder of the feed being written.
  std::string href(const std::string &path, const Query &query) const;
  static Query with(Query query, const FeedParams &params, bool withSort);

  const Catalogue *catalogue_;
  StoreRecord store_;
  // "../" while the search is written: it lies one folder deeper, at "opensearch/search".
  std::string folder_;
};

}  // namespace devstore

#endif
