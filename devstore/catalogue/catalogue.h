// Reads the catalogue of one store from the database: books with the store's prices,
// the genre tree, collections and suggestions.
#ifndef DEVSTORE_CATALOGUE_H
#define DEVSTORE_CATALOGUE_H

#include <optional>
#include <string>
#include <vector>

#include "database.h"
#include "records.h"

namespace devstore {

class Catalogue {
public:
  static constexpr int kPageSize = 20;

  explicit Catalogue(const Database *db);

  std::vector<StoreRecord> stores() const;
  std::optional<StoreRecord> store(const std::string &code) const;

  // Page `page` (from 1) of the books the query selects, with `total` over all pages.
  BookPage books(const StoreRecord &store, const BookQuery &query, int page) const;
  std::optional<BookRecord> book(const StoreRecord &store, long long id) const;

  // Top-level genres, each followed by the genres below it, with their books counted; `kind`
  // counts only such books.
  std::vector<GenreRecord> genres(const StoreRecord &store, const std::string &kind) const;
  // Without a count of books, as those below.
  std::optional<GenreRecord> genre(const StoreRecord &store, const std::string &slug) const;
  // The genre of a book and the one above it.
  std::vector<GenreRecord> genresOf(const StoreRecord &store, long long bookId) const;

  std::vector<CollectionRecord> collections() const;
  std::optional<CollectionRecord> collection(long long id) const;
  std::optional<std::string> authorName(long long id) const;
  std::optional<std::string> seriesTitle(long long id) const;
  // The series of the week: the first one of books of that kind.
  std::optional<long long> firstSeries(const std::string &kind) const;

  // JPEG bytes of a book's cover.
  std::optional<std::string> cover(long long bookId) const;
  // The fulfilment key of a purchase of the book by the customer, or by whoever holds the key.
  std::optional<std::string> purchase(long long bookId, long long customerId, const std::string &key) const;

  // Titles and authors that begin a word with `term`, for the search field.
  std::vector<std::string> matchingTerms(const std::string &term, int limit) const;

  // Grows with every change of the catalogue.
  long long revision() const;

private:
  const Database *db_;
};

}  // namespace devstore

#endif
