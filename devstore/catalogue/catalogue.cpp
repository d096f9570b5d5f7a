#include "catalogue.h"

#include <algorithm>
#include <sstream>

namespace devstore {

namespace {

const char kBookColumns[] =
    "SELECT b.*, a.name AS author, g.slug AS genre_slug, g.name_en, g.name_de, s.title AS series_title,"
    " s.min_books, s.discount, p.price, p.old_price";

const char kBookTables[] =
    " FROM books b JOIN authors a ON a.id = b.author_id JOIN genres g ON g.id = b.genre_id"
    " LEFT JOIN series s ON s.id = b.series_id JOIN prices p ON p.book_id = b.id AND p.store_code = ?";

std::string genreName(const SqlRow &row, const StoreRecord &store) {
  return row.text(store.language == "deu" ? "name_de" : "name_en");
}

BookRecord bookFrom(const SqlRow &row, const StoreRecord &store) {
  BookRecord book;
  book.id = row.integer("id");
  book.title = row.text("title");
  book.author_id = row.integer("author_id");
  book.author = row.text("author");
  book.kind = row.text("kind");
  book.format = row.text("format");
  book.acsm = row.integer("acsm") != 0;
  book.language = row.text("language");
  book.publisher = row.text("publisher");
  book.isbn = row.text("isbn");
  book.pages = static_cast<int>(row.integer("pages"));
  book.published = row.text("published");
  book.description = row.text("description");
  book.rating = row.real("rating");
  book.in_stock = row.integer("in_stock") != 0;
  book.series_id = row.integer("series_id");
  book.series_title = row.text("series_title");
  book.series_min_books = static_cast<int>(row.integer("min_books"));
  book.series_discount = static_cast<int>(row.integer("discount"));
  book.genre_slug = row.text("genre_slug");
  book.genre_name = genreName(row, store);
  book.price = row.real("price");
  book.old_price = row.real("old_price");
  book.currency = store.currency;
  return book;
}

// LIKE treats % and _ as wild cards; a search for them means the characters themselves.
std::string likePattern(const std::string &word) {
  std::string pattern = "%";
  for (char c : word) {
    if (c == '%' || c == '_' || c == '\\') pattern += '\\';
    pattern += c;
  }
  return pattern + "%";
}

std::vector<std::string> wordsOf(const std::string &text) {
  std::istringstream in(text);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

// The WHERE clause of a query, with its parameters after the store's code.
std::string conditions(const BookQuery &query, std::vector<SqlValue> *params) {
  std::string where = " WHERE 1";
  const auto add = [&](const char *clause, std::initializer_list<SqlValue> values) {
    where += std::string(" AND ") + clause;
    params->insert(params->end(), values);
  };
  if (!query.genre_slug.empty()) {
    add("(g.slug = ? OR g.parent_id = (SELECT id FROM genres WHERE slug = ?))", {query.genre_slug, query.genre_slug});
  }
  if (query.author_id) add("b.author_id = ?", {query.author_id});
  if (query.series_id) add("b.series_id = ?", {query.series_id});
  if (query.collection_id) {
    add("b.id IN (SELECT book_id FROM collection_books WHERE collection_id = ?)", {query.collection_id});
  }
  if (query.related_to) {
    add("b.id != ? AND (b.genre_id = (SELECT genre_id FROM books WHERE id = ?)"
        " OR b.author_id = (SELECT author_id FROM books WHERE id = ?))",
        {query.related_to, query.related_to, query.related_to});
  }
  if (query.purchased_by) add("b.id IN (SELECT book_id FROM purchases WHERE customer_id = ?)", {query.purchased_by});
  if (query.wished_by) add("b.id IN (SELECT book_id FROM wishlist WHERE customer_id = ?)", {query.wished_by});
  for (const auto &word : wordsOf(query.search)) {
    add("(b.title LIKE ? ESCAPE '\\' OR a.name LIKE ? ESCAPE '\\')", {likePattern(word), likePattern(word)});
  }
  if (!query.kind.empty()) add("b.kind = ?", {query.kind});
  if (!query.language.empty()) add("b.language = ?", {query.language});
  if (query.free_only) add("p.price = 0", {});
  return where;
}

std::string order(const std::string &sort) {
  if (sort == "new") return " ORDER BY b.published DESC, b.id";
  if (sort == "title") return " ORDER BY b.title COLLATE NOCASE, b.id";
  if (sort == "price") return " ORDER BY p.price, b.id";
  if (sort == "series") return " ORDER BY b.series_index, b.id";
  return " ORDER BY b.popularity DESC, b.id";
}

GenreRecord genreFrom(const SqlRow &row, const StoreRecord &store, bool counted) {
  GenreRecord genre;
  genre.id = row.integer("id");
  genre.slug = row.text("slug");
  genre.name = genreName(row, store);
  genre.parent_id = row.integer("parent_id");
  genre.parent_slug = row.text("parent_slug");
  if (counted) genre.books = static_cast<int>(row.integer("books"));
  return genre;
}

const char kGenreColumns[] = "SELECT g.*, parent.slug AS parent_slug";
const char kGenreCount[] =
    ", (SELECT COUNT(*) FROM books b JOIN genres bg ON bg.id = b.genre_id"
    " WHERE (bg.id = g.id OR bg.parent_id = g.id) AND (? = '' OR b.kind = ?)) AS books";
const char kGenreTables[] = " FROM genres g LEFT JOIN genres parent ON parent.id = g.parent_id";

}  // namespace

Catalogue::Catalogue(const Database *db) : db_(db) {}

std::vector<StoreRecord> Catalogue::stores() const {
  std::vector<StoreRecord> list;
  for (const auto &row : db_->query("SELECT * FROM stores ORDER BY position")) {
    list.push_back({row.text("code"), row.text("name"), row.text("currency"), row.text("language")});
  }
  return list;
}

std::optional<StoreRecord> Catalogue::store(const std::string &code) const {
  for (auto &store : stores()) {
    if (store.code == code) return store;
  }
  return std::nullopt;
}

BookPage Catalogue::books(const StoreRecord &store, const BookQuery &query, int page) const {
  std::vector<SqlValue> params{store.code};
  const std::string where = conditions(query, &params);
  BookPage result;
  const auto count = db_->query(std::string("SELECT COUNT(*) AS n") + kBookTables + where, params);
  result.total = count.empty() ? 0 : static_cast<int>(count.front().integer("n"));
  params.push_back(static_cast<long long>(kPageSize));
  params.push_back(static_cast<long long>(std::max(0, page - 1)) * kPageSize);
  for (const auto &row :
       db_->query(kBookColumns + std::string(kBookTables) + where + order(query.sort) + " LIMIT ? OFFSET ?", params)) {
    result.books.push_back(bookFrom(row, store));
  }
  return result;
}

std::optional<BookRecord> Catalogue::book(const StoreRecord &store, long long id) const {
  const auto rows = db_->query(kBookColumns + std::string(kBookTables) + " WHERE b.id = ?", {store.code, id});
  if (rows.empty()) return std::nullopt;
  return bookFrom(rows.front(), store);
}

std::vector<GenreRecord> Catalogue::genres(const StoreRecord &store, const std::string &kind) const {
  std::vector<GenreRecord> list;
  const auto rows =
      db_->query(std::string(kGenreColumns) + kGenreCount + kGenreTables +
                     " ORDER BY COALESCE(parent.position, g.position), g.parent_id IS NOT NULL, g.position",
                 {kind, kind});
  for (const auto &row : rows) list.push_back(genreFrom(row, store, true));
  return list;
}

std::optional<GenreRecord> Catalogue::genre(const StoreRecord &store, const std::string &slug) const {
  const auto rows = db_->query(std::string(kGenreColumns) + kGenreTables + " WHERE g.slug = ?", {slug});
  if (rows.empty()) return std::nullopt;
  return genreFrom(rows.front(), store, false);
}

std::vector<GenreRecord> Catalogue::genresOf(const StoreRecord &store, long long bookId) const {
  std::vector<GenreRecord> list;
  const auto rows = db_->query(
      std::string(kGenreColumns) + kGenreTables +
          " WHERE g.id = (SELECT genre_id FROM books WHERE id = ?) OR g.id = (SELECT parent_id FROM genres WHERE id ="
          " (SELECT genre_id FROM books WHERE id = ?)) ORDER BY g.parent_id IS NOT NULL",
      {bookId, bookId});
  for (const auto &row : rows) list.push_back(genreFrom(row, store, false));
  return list;
}

std::vector<CollectionRecord> Catalogue::collections() const {
  std::vector<CollectionRecord> list;
  for (const auto &row : db_->query("SELECT id FROM collections ORDER BY id")) {
    if (auto found = collection(row.integer("id"))) list.push_back(*found);
  }
  return list;
}

std::optional<CollectionRecord> Catalogue::collection(long long id) const {
  const auto rows = db_->query("SELECT * FROM collections WHERE id = ?", {id});
  if (rows.empty()) return std::nullopt;
  CollectionRecord record{id, rows.front().text("title"), rows.front().text("description"), {}};
  for (const auto &row :
       db_->query("SELECT book_id FROM collection_books WHERE collection_id = ? ORDER BY position", {id})) {
    record.book_ids.push_back(row.integer("book_id"));
  }
  return record;
}

std::optional<std::string> Catalogue::authorName(long long id) const {
  const auto rows = db_->query("SELECT name FROM authors WHERE id = ?", {id});
  if (rows.empty()) return std::nullopt;
  return rows.front().text("name");
}

std::optional<std::string> Catalogue::seriesTitle(long long id) const {
  const auto rows = db_->query("SELECT title FROM series WHERE id = ?", {id});
  if (rows.empty()) return std::nullopt;
  return rows.front().text("title");
}

std::optional<std::string> Catalogue::cover(long long bookId) const {
  const auto rows = db_->query("SELECT jpeg FROM covers WHERE book_id = ?", {bookId});
  if (rows.empty()) return std::nullopt;
  return rows.front().text("jpeg");
}

std::optional<std::string> Catalogue::purchase(long long bookId, long long customerId, const std::string &key) const {
  const auto rows = db_->query(
      "SELECT fulfilment_key FROM purchases WHERE book_id = ? AND (customer_id = ? OR (? != '' AND fulfilment_key = "
      "?))",
      {bookId, customerId, key, key});
  if (rows.empty()) return std::nullopt;
  return rows.front().text("fulfilment_key");
}

std::optional<long long> Catalogue::firstSeries(const std::string &kind) const {
  const auto rows =
      db_->query("SELECT MIN(series_id) AS id FROM books WHERE kind = ? AND series_id IS NOT NULL", {kind});
  if (rows.empty() || rows.front().isNull("id")) return std::nullopt;
  return rows.front().integer("id");
}

std::vector<std::string> Catalogue::matchingTerms(const std::string &term, int limit) const {
  std::vector<std::string> terms;
  if (term.empty()) return terms;
  const std::string start = likePattern(term).substr(1);
  const std::string inner = "% " + start;
  for (const auto &row : db_->query("SELECT DISTINCT name AS text FROM authors WHERE name LIKE ? ESCAPE '\\' OR name "
                                    "LIKE ? ESCAPE '\\' UNION SELECT DISTINCT title FROM books WHERE title LIKE ? "
                                    "ESCAPE '\\' OR title LIKE ? ESCAPE '\\' ORDER BY 1 LIMIT ?",
                                    {start, inner, start, inner, static_cast<long long>(limit)})) {
    terms.push_back(row.text("text"));
  }
  return terms;
}

long long Catalogue::revision() const {
  const auto rows = db_->query("SELECT revision FROM catalogue_revision");
  return rows.empty() ? 0 : rows.front().integer("revision");
}

}  // namespace devstore
