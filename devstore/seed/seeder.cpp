#include "seeder.h"

#include <cmath>
#include <cstdio>

#include "cover_painter.h"
#include "password_hasher.h"
#include "seed_vocabulary.h"

namespace devstore {

namespace {

namespace words = vocabulary;

// A price in a store's currency: cents end in .99, hryvnias are whole.
double storePrice(double euros, const words::StoreDefinition &store) {
  if (euros <= 0) return 0;
  if (std::string(store.currency) == "UAH") return std::round(euros * store.rate);
  return std::ceil(euros * store.rate) - 0.01;
}

const double kEbookPrices[] = {2.99, 4.99, 6.99, 8.99, 9.99, 12.99, 14.99, 19.99};
const double kAudioPrices[] = {9.99, 14.99, 19.99, 24.99};

// Genres of the series, by slug: the kinds of books that come in series.
const char *const kSeriesGenres[] = {"epic-fantasy", "detective",     "space-opera", "regency",   "young-adult",
                                     "thriller",     "urban-fantasy", "dystopia",    "adventure", "historical-fiction"};

}  // namespace

Seeder::Seeder(Database *db) : db_(db) {}

bool Seeder::seedIfEmpty() {
  if (!db_->query("SELECT code FROM stores LIMIT 1").empty()) return true;
  std::fprintf(stderr, "devstore: seeding a new catalogue\n");
  return db_->transaction([this] { return seedCatalogue() && paintCovers(); });
}

bool Seeder::seedCatalogue() {
  return seedStores() && seedGenres() && seedAuthors() && seedSeries() && seedStandaloneBooks() && seedCollections() &&
         seedCustomer();
}

bool Seeder::seedStores() {
  long long position = 0;
  for (const auto &store : words::stores()) {
    if (db_->run("INSERT INTO stores(code, name, currency, language, position) VALUES (?, ?, ?, ?, ?)",
                 {store.code, store.name, store.currency, store.language, position++}) < 0) {
      return false;
    }
  }
  return true;
}

bool Seeder::seedGenres() {
  long long position = 0;
  for (const auto &branch : words::genres()) {
    const long long parent = db_->run("INSERT INTO genres(slug, name_en, name_de, position) VALUES (?, ?, ?, ?)",
                                      {branch.genre.slug, branch.genre.english, branch.genre.german, position++});
    if (parent < 0) return false;
    for (const auto &child : branch.children) {
      const long long id =
          db_->run("INSERT INTO genres(slug, parent_id, name_en, name_de, position) VALUES (?, ?, ?, ?, ?)",
                   {child.slug, parent, child.english, child.german, position++});
      if (id < 0) return false;
      leaf_genres_.push_back(id);
    }
  }
  return true;
}

bool Seeder::seedAuthors() {
  const auto &first = words::firstNames();
  const auto &last = words::lastNames();
  for (size_t i = 0; i < 45; ++i) {
    const std::string name = std::string(first[i % first.size()]) + " " + last[(i * 7 + i / 30) % last.size()];
    const long long id = db_->run("INSERT INTO authors(name) VALUES (?)", {name});
    if (id < 0) return false;
    author_ids_.push_back(id);
  }
  return true;
}

bool Seeder::seedSeries() {
  for (int s = 0; s < 20; ++s) {
    const std::string title = "The " + pick(words::adjectives()) + " " + pick(words::nouns());
    const long long seriesId =
        db_->run("INSERT INTO series(title, min_books, discount) VALUES (?, ?, ?)",
                 {title, static_cast<long long>(s % 5 == 4 ? 2 : 3), static_cast<long long>(10 + 5 * (s % 4))});
    const auto genre = db_->query("SELECT id FROM genres WHERE slug = ?", {kSeriesGenres[s % 10]});
    if (seriesId < 0 || genre.empty()) return false;
    const std::string kind = (s == 5 || s == 13) ? "audio" : "ebook";
    const long long author = author_ids_[(s * 3) % author_ids_.size()];
    for (int i = 1; i <= 3 + s % 4; ++i) {
      const std::string bookTitle = title + " " + std::to_string(i) + ": " + uniqueTitle();
      if (!insertBook({bookTitle, author, genre.front().integer("id"), kind, seriesId, i})) return false;
    }
  }
  return true;
}

bool Seeder::seedStandaloneBooks() {
  while (books_ < kBookCount) {
    const std::string kind = books_ % 6 == 5 ? "audio" : "ebook";
    const long long author = author_ids_[(books_ * 5 + books_ / 7) % author_ids_.size()];
    if (!insertBook({uniqueTitle(), author, leaf_genres_[books_ % leaf_genres_.size()], kind})) return false;
  }
  return true;
}

bool Seeder::insertBook(const BookPlan &plan) {
  const int index = books_++;
  const bool audio = plan.kind == "audio";
  const bool acsm = !audio && index % 13 == 3;
  std::string format = "application/epub+zip";
  if (audio) format = index % 3 == 0 ? "application/zip" : "audio/mpeg";
  if (!audio && index % 9 == 7) format = "application/pdf";
  const int width = audio ? 600 : 360 + 60 * static_cast<int>(random_() % 7);
  const double ratios[] = {1.5, 1.6, 1.33, 1.45};
  const int height = audio ? 600 : static_cast<int>(width * ratios[random_() % 4]);
  char published[16];
  std::snprintf(published, sizeof published, "%04u-%02u-%02u", 1996 + static_cast<unsigned>(random_() % 31),
                1 + static_cast<unsigned>(random_() % 12), 1 + static_cast<unsigned>(random_() % 28));
  const long long id = db_->run(
      "INSERT INTO books(title, author_id, genre_id, kind, format, acsm, language, publisher, isbn, pages, published,"
      " description, rating, popularity, in_stock, series_id, series_index, cover_width, cover_height)"
      " VALUES (?, ?, ?, ?, ?, ?, ?, ?, '', ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      {plan.title, plan.author_id, plan.genre_id, plan.kind, format, static_cast<long long>(acsm), language(),
       pick(words::publishers()), static_cast<long long>(audio ? 0 : 80 + random_() % 820), std::string(published),
       description(index), 2.5 + static_cast<double>(random_() % 26) / 10, static_cast<long long>(random_() % 10000),
       static_cast<long long>(index != 42 && index != 101),
       plan.series_id ? SqlValue(plan.series_id) : SqlValue(nullptr),
       plan.series_id ? SqlValue(static_cast<long long>(plan.series_index)) : SqlValue(nullptr),
       static_cast<long long>(width), static_cast<long long>(height)});
  if (id < 0) return false;
  return db_->run("UPDATE books SET isbn = ? WHERE id = ?", {isbn(id), id}) >= 0 &&
         insertPrices(id, index, plan.kind, acsm);
}

bool Seeder::insertPrices(long long bookId, int index, const std::string &kind, bool acsm) {
  const bool free = kind == "ebook" && !acsm && index % 17 == 0;
  const double base = free ? 0 : (kind == "audio" ? kAudioPrices[random_() % 4] : kEbookPrices[random_() % 8]);
  const double old = (!free && index % 11 == 4) ? base * 1.5 : 0;
  for (const auto &store : words::stores()) {
    if (db_->run("INSERT INTO prices(store_code, book_id, price, old_price) VALUES (?, ?, ?, ?)",
                 {store.code, bookId, storePrice(base, store), storePrice(old, store)}) < 0) {
      return false;
    }
  }
  return true;
}

bool Seeder::seedCollections() {
  const char *const titles[][2] = {{"Summer reading", "fiction"},        {"Crime classics", "crime"},
                                   {"Worlds beyond", "science-fiction"}, {"First loves", "romance"},
                                   {"Read it together", "children"},     {"Great lives", "biography"}};
  for (const auto &[title, genre] : titles) {
    const long long id =
        db_->run("INSERT INTO collections(title, description) VALUES (?, ?)",
                 {title, std::string("<p>Four books chosen by our editors: <b>") + title + "</b>.</p>"});
    const auto books = db_->query(
        "SELECT b.id FROM books b JOIN genres g ON g.id = b.genre_id JOIN genres p ON p.id = g.parent_id"
        " WHERE p.slug = ? AND b.kind = 'ebook' AND b.series_id IS NULL ORDER BY b.id LIMIT 4",
        {genre});
    if (id < 0 || books.size() != 4) return false;
    for (long long position = 0; position < 4; ++position) {
      if (db_->run("INSERT INTO collection_books(collection_id, book_id, position) VALUES (?, ?, ?)",
                   {id, books[position].integer("id"), position}) < 0) {
        return false;
      }
    }
  }
  return true;
}

bool Seeder::seedCustomer() {
  const long long customer =
      db_->run("INSERT INTO customers(email, password_hash, first_name, last_name) VALUES (?, ?, 'Rita', 'Reader')",
               {kCustomerEmail, PasswordHasher::hash(kCustomerPassword)});
  if (customer < 0) return false;
  // Owned: a free e-book, a token-delivered one, an audio book and a plain e-book.
  const auto owned = db_->query(
      "SELECT MIN(b.id) AS id FROM books b JOIN prices p ON p.book_id = b.id AND p.store_code = 'de_de'"
      " WHERE p.price = 0 UNION ALL SELECT MIN(id) FROM books WHERE acsm = 1"
      " UNION ALL SELECT MIN(id) FROM books WHERE kind = 'audio'"
      " UNION ALL SELECT MIN(id) FROM books WHERE format = 'application/epub+zip' AND acsm = 0 AND id > 30");
  for (const auto &row : owned) {
    if (db_->run("INSERT INTO purchases(customer_id, book_id, store_code, purchased_at) VALUES (?, ?, 'de_de', ?)",
                 {customer, row.integer("id"), 1767225600LL}) < 0) {
      return false;
    }
  }
  // Cards kept by both gateways, the PayOnline one used last.
  const std::vector<std::vector<SqlValue>> cards = {
      {customer, "hgwcc", "411111******1111", "VISA", 1767225600LL},
      {customer, "hgwcc", "555555******4444", "MASTERCARD", 1767225700LL},
      {customer, "payonline", "424242******4242", "VISA", 1767225800LL},
  };
  for (const auto &card : cards) {
    if (db_->run("INSERT INTO cards(customer_id, gateway, number, brand, last_used_at) VALUES (?, ?, ?, ?, ?)", card) <
        0) {
      return false;
    }
  }
  const auto wished = db_->query("SELECT id FROM books WHERE id IN (50, 51, 60, 102) OR in_stock = 0 LIMIT 5");
  for (const auto &row : wished) {
    if (db_->run("INSERT OR IGNORE INTO wishlist(customer_id, book_id, added_at) VALUES (?, ?, ?)",
                 {customer, row.integer("id"), 1767225600LL + row.integer("id")}) < 0) {
      return false;
    }
  }
  return true;
}

bool Seeder::paintCovers() {
  const auto books = db_->query(
      "SELECT b.id, b.title, a.name, b.cover_width, b.cover_height FROM books b JOIN authors a ON a.id = b.author_id");
  for (const auto &book : books) {
    const std::string jpeg =
        CoverPainter::paint(book.text("title"), book.text("name"), static_cast<int>(book.integer("cover_width")),
                            static_cast<int>(book.integer("cover_height")), static_cast<int>(book.integer("id") * 47));
    if (jpeg.empty() ||
        db_->run("INSERT INTO covers(book_id, jpeg) VALUES (?, ?)", {book.integer("id"), SqlBlob{jpeg}}) < 0) {
      std::fprintf(stderr, "devstore: cannot store the cover of book %s\n", book.text("id").c_str());
      return false;
    }
  }
  return true;
}

std::string Seeder::uniqueTitle() {
  for (int attempt = 0;; ++attempt) {
    std::string title;
    switch (random_() % 5) {
      case 0:
        title = "The " + pick(words::adjectives()) + " " + pick(words::nouns());
        break;
      case 1:
        title = pick(words::nouns()) + " of " + pick(words::places());
        break;
      case 2:
        title = "A " + pick(words::nouns()) + " in " + pick(words::places());
        break;
      case 3:
        title = "The " + pick(words::nouns()) + "'s " + pick(words::nouns());
        break;
      default:
        title = pick(words::adjectives()) + " " + pick(words::nouns()) + "s";
        break;
    }
    if (attempt > 20) title += " " + std::to_string(attempt);
    if (titles_.insert(title).second) return title;
  }
}

std::string Seeder::pick(const std::vector<const char *> &list) {
  return list[random_() % list.size()];
}

std::string Seeder::language() {
  int roll = static_cast<int>(random_() % 100);
  for (const auto &language : words::languages()) {
    if (roll < language.share) return language.code;
    roll -= language.share;
  }
  return words::languages().front().code;
}

// Mostly a short paragraph or two; some books get the long, formatted texts a publisher writes.
std::string Seeder::description(int index) {
  const auto &sentences = words::sentences();
  const int paragraphs = index % 6 == 0 ? 12 : 1 + index % 3;
  std::string html;
  for (int p = 0; p < paragraphs; ++p) {
    html += "<p>";
    for (int s = 0; s < 3; ++s) html += std::string(sentences[(index + p * 3 + s) % sentences.size()]) + " ";
    html += "</p>";
  }
  if (index % 4 == 1) html += "<p><b>Praise:</b> <i>“Impossible to put down.”</i></p>";
  if (index % 10 == 2) html += "<ul><li>Illustrated</li><li>With an afterword &amp; notes</li></ul>";
  return html;
}

std::string Seeder::isbn(long long bookId) const {
  char digits[16];
  std::snprintf(digits, sizeof digits, "978316%06lld", bookId % 1000000);
  int sum = 0;
  for (int i = 0; i < 12; ++i) sum += (digits[i] - '0') * (i % 2 ? 3 : 1);
  return std::string(digits) + static_cast<char>('0' + (10 - sum % 10) % 10);
}

}  // namespace devstore
