// Plain records that the catalogue reads from the database and the feeds are written from.
#ifndef DEVSTORE_RECORDS_H
#define DEVSTORE_RECORDS_H

#include <string>
#include <vector>

namespace devstore {

struct StoreRecord {
  std::string code;
  std::string name;
  std::string currency;
  std::string language;
};

struct GenreRecord {
  long long id = 0;
  std::string slug;
  std::string name;
  long long parent_id = 0;
  std::string parent_slug;
  // Only a list of all genres counts them.
  int books = 0;
};

struct BookRecord {
  long long id = 0;
  std::string title;
  long long author_id = 0;
  std::string author;
  std::string kind;
  std::string format;
  bool acsm = false;
  std::string language;
  std::string publisher;
  std::string isbn;
  int pages = 0;
  std::string published;
  std::string description;
  double rating = 0;
  bool in_stock = true;
  long long series_id = 0;
  std::string series_title;
  int series_min_books = 0;
  int series_discount = 0;
  std::string genre_slug;
  std::string genre_name;
  double price = 0;
  double old_price = 0;
  std::string currency;
};

struct CollectionRecord {
  long long id = 0;
  std::string title;
  std::string description;
  std::vector<long long> book_ids;
};

// What a list of books is drawn from; the empty fields do not narrow it.
struct BookQuery {
  std::string genre_slug;  // the genre and the genres below it
  long long author_id = 0;
  long long series_id = 0;
  long long collection_id = 0;
  long long related_to = 0;
  long long purchased_by = 0;
  long long wished_by = 0;
  std::string search;
  std::string kind;      // "ebook" or "audio"
  std::string language;  // three-letter code
  bool free_only = false;
  // "popular", "new", "title", "price" or "series"
  std::string sort = "popular";
};

// What the client asked of a list: the kind of book, the content language, the order and the page.
struct FeedParams {
  std::string kind;
  std::string content;
  std::string sort;
  int page = 1;
};

struct BookPage {
  int total = 0;
  std::vector<BookRecord> books;
};

}  // namespace devstore

#endif
