// Fills a new database with a catalogue that looks like a real store's: three stores,
// a genre tree, e-books and audio books, series, collections, free and discounted books,
// and one customer to sign in with. The same seed every time, so tests can count on it.
#ifndef DEVSTORE_SEEDER_H
#define DEVSTORE_SEEDER_H

#include <random>
#include <set>
#include <string>
#include <vector>

#include "database.h"

namespace devstore {

class Seeder {
public:
  static constexpr int kBookCount = 330;
  static constexpr const char *kCustomerEmail = "reader@example.com";
  static constexpr const char *kCustomerPassword = "reader";

  explicit Seeder(Database *db);

  // Seeds a database without stores; one that has them is left as it is. False when a
  // write failed, and then nothing of the seed is kept.
  bool seedIfEmpty();

private:
  struct BookPlan {
    std::string title;
    long long author_id;
    long long genre_id;
    std::string kind;
    long long series_id = 0;
    int series_index = 0;
  };

  bool seedCatalogue();
  bool seedStores();
  bool seedGenres();
  bool seedAuthors();
  bool seedSeries();
  bool seedStandaloneBooks();
  bool seedCollections();
  bool seedCustomer();
  bool insertBook(const BookPlan &plan);
  bool insertPrices(long long bookId, int index, const std::string &kind, bool acsm);
  bool paintCovers();

  std::string uniqueTitle();
  std::string pick(const std::vector<const char *> &words);
  std::string language();
  std::string description(int index);
  std::string isbn(long long bookId) const;

  Database *db_;
  std::mt19937 random_{20261123};
  std::vector<long long> leaf_genres_;
  std::vector<long long> author_ids_;
  std::set<std::string> titles_;
  int books_ = 0;
};

}  // namespace devstore

#endif
