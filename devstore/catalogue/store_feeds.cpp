#include "store_feeds.h"

#include <cstdio>
#include <sstream>

#include "opds/opds_names.h"
#include "seed_vocabulary.h"
#include "url_encoding.h"

namespace devstore {

namespace {

namespace names = lumenpress::opds::names;

const char kAtom[] = "application/atom+xml";
const char kAcsm[] = "application/vnd.adobe.adept+xml";
const char kAcquisitionRel[] = "http://opds-spec.org/acquisition";

// Genres shown as rows of the e-book home page.
const std::vector<const char *> kHomeGenres = {"fiction", "crime", "fantasy", "science-fiction"};
const std::vector<const char *> kAudioHomeGenres = {"crime", "fantasy", "children"};

std::string decimal(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

const char *sortTitle(const std::string &sort, bool german) {
  if (sort == "new") return german ? "Neuheiten" : "Newest";
  if (sort == "title") return german ? "Titel" : "Title";
  if (sort == "price") return german ? "Preis" : "Price";
  return german ? "Beliebtheit" : "Popularity";
}

}  // namespace

StoreFeeds::StoreFeeds(const Catalogue *catalogue, StoreRecord store)
    : catalogue_(catalogue), store_(std::move(store)) {}

std::string StoreFeeds::feedPath(const std::string &name) const {
  return "/" + store_.code + "/lpress/opds/" + name;
}

std::string StoreFeeds::coverPath(long long bookId) {
  return "/covers/" + std::to_string(bookId) + ".jpg";
}

std::string StoreFeeds::feedId(const std::string &name) const {
  return "urn:lumenpress:" + store_.code + ":" + name;
}

std::string StoreFeeds::href(const std::string &path, const Query &query) const {
  std::string out = folder_ + path;
  char separator = '?';
  for (const auto &[key, value] : query) {
    if (value.empty()) continue;
    out += separator + key + "=" + UrlEncoding::encode(value);
    separator = '&';
  }
  return out;
}

StoreFeeds::Query StoreFeeds::with(Query query, const FeedParams &params, bool withSort) {
  query.emplace_back("kind", params.kind == "audio" ? "audio" : "");
  query.emplace_back("content", params.content);
  if (withSort && params.sort != "popular") query.emplace_back("sort", params.sort);
  return query;
}

std::string StoreFeeds::home(const FeedParams &params) const {
  const bool audio = params.kind == "audio";
  const bool german = store_.language == "deu";
  const std::string name = audio ? "audio" : "home";
  Query self = {{"content", params.content}};
  if (params.page > 1) self.emplace_back("page", std::to_string(params.page));
  FeedWriter feed(feedId(name), audio ? (german ? "Hörbücher" : "Audio books") : store_.name, href(name, self), false);
  feed.link("start", FeedWriter::kNavigationType, href("home", {}));
  addSearchLinks(&feed);
  for (const auto &language : vocabulary::languages()) {
    const bool active = params.content == language.code;
    feed.facet("Filter", language.own, href(name, {{"content", language.code}}), active);
  }
  feed.facet("Filter", german ? "Alle Sprachen" : "All languages", name, params.content.empty());
  feed.link("http://opds-spec.org/featured", FeedWriter::kAcquisitionType,
            href("list", with({{"name", "popular"}}, params, false)), german ? "Bestseller" : "Bestsellers");
  feed.link("http://opds-spec.org/sort/new", FeedWriter::kAcquisitionType,
            href("list", with({{"name", "new"}}, params, false)), german ? "Neuheiten" : "New releases");
  feed.link("http://opds-spec.org/sort/popular", FeedWriter::kAcquisitionType,
            href("list", with({{"name", "popular"}}, params, false)), german ? "Beliebt" : "Popular");

  const auto rows = homeRows(params);
  const int total = static_cast<int>(rows.size());
  addPages(&feed, name, {}, params, total, kHomeRowsPerPage);
  const int first = (params.page - 1) * kHomeRowsPerPage;
  for (int i = first; i < total && i < first + kHomeRowsPerPage; ++i)
    addRow(&feed, rows[i].id, rows[i].title, rows[i].href);
  return feed.xml();
}

std::vector<StoreFeeds::HomeRow> StoreFeeds::homeRows(const FeedParams &params) const {
  const bool audio = params.kind == "audio";
  const bool german = store_.language == "deu";
  std::vector<HomeRow> rows;
  const auto row = [&](const char *tag, const char *title, const char *list) {
    rows.push_back({std::string("tag:root:") + tag, title, href("list", with({{"name", list}}, params, false))});
  };
  if (!audio) row("weekbook", german ? "Buch der Woche" : "Book of the week", "weekbook");
  row("popular", german ? "Beliebt" : "Popular", "popular");
  row("new", german ? "Neuheiten" : "New releases", "new");
  row("weekgrouped", german ? "Reihe der Woche" : "Series of the week", "weekseries");
  if (!audio) row("categorygrouped", german ? "Sammlungen" : "Collections", "collections");
  if (!audio) row("free", german ? "Kostenlos" : "Free books", "free");
  for (const char *slug : audio ? kAudioHomeGenres : kHomeGenres) {
    if (const auto genre = catalogue_->genre(store_, slug)) {
      rows.push_back(
          {std::string("tag:root:genre:") + slug, genre->name, href("genre", with({{"id", slug}}, params, false))});
    }
  }
  return rows;
}

std::string StoreFeeds::genres(const FeedParams &params) const {
  const bool audio = params.kind == "audio";
  FeedWriter feed(feedId(audio ? "genres:audio" : "genres"), store_.language == "deu" ? "Genres" : "Categories",
                  href("genres", {{"productType", audio ? "audio" : ""}, {"content", params.content}}), false);
  feed.link("start", FeedWriter::kNavigationType, href("home", {}));
  for (const auto &genre : catalogue_->genres(store_, audio ? "audio" : "")) {
    if (genre.books == 0) continue;
    const std::string path = genre.parent_slug.empty() ? genre.slug : genre.parent_slug + "::" + genre.slug;
    const std::string target = href("genre", with({{"id", genre.slug}}, params, false));
    auto entry = feed.entry(feedId("genres::" + path), genre.name);
    FeedWriter::link(entry, "subsection", FeedWriter::kAcquisitionType, target);
    FeedWriter::link(entry, "collection", FeedWriter::kAcquisitionType, target, genre.name);
    FeedWriter::text(entry, "content", std::to_string(genre.books) + (audio ? " audio books" : " books"));
  }
  return feed.xml();
}

std::optional<std::string> StoreFeeds::list(const std::string &name, const FeedParams &params) const {
  const bool german = store_.language == "deu";
  BookQuery books;
  books.kind = params.kind == "audio" ? "audio" : "ebook";
  books.language = params.content;
  books.sort = params.sort;
  std::string title;
  if (name == "popular") {
    title = german ? "Beliebt" : "Popular";
  } else if (name == "new") {
    title = german ? "Neuheiten" : "New releases";
    if (params.sort == "popular") books.sort = "new";
  } else if (name == "free") {
    title = german ? "Kostenlos" : "Free books";
    books.free_only = true;
  } else if (name == "weekbook") {
    title = german ? "Buch der Woche" : "Book of the week";
    books.genre_slug = "literary";
  } else if (name == "weekseries") {
    // The series of the week is the first series of the kind.
    const auto seriesId = catalogue_->firstSeries(books.kind);
    if (!seriesId) return std::nullopt;
    books.series_id = *seriesId;
    books.sort = "series";
    title = catalogue_->seriesTitle(*seriesId).value_or("");
  } else if (name == "collections") {
    FeedWriter feed(feedId("collections"), german ? "Sammlungen" : "Collections", href("list", {{"name", name}}), true);
    feed.link("start", FeedWriter::kNavigationType, href("home", {}));
    for (const auto &collection : catalogue_->collections()) addCollection(&feed, collection, params);
    return feed.xml();
  } else {
    return std::nullopt;
  }
  return bookList(feedId("list:" + name), title, "list", {{"name", name}}, books, params);
}

std::optional<std::string> StoreFeeds::genre(const std::string &slug, const FeedParams &params) const {
  const auto found = catalogue_->genre(store_, slug);
  if (!found) return std::nullopt;
  BookQuery books;
  books.genre_slug = slug;
  books.kind = params.kind == "audio" ? "audio" : "";
  books.language = params.content;
  books.sort = params.sort;
  return bookList(feedId("genre:" + slug), found->name, "genre", {{"id", slug}}, books, params);
}

std::optional<std::string> StoreFeeds::item(long long id) const {
  const auto book = catalogue_->book(store_, id);
  if (!book) return std::nullopt;
  FeedWriter feed(feedId("item:" + std::to_string(id)), book->title, href("item", {{"id", std::to_string(id)}}), true);
  feed.link("start", FeedWriter::kNavigationType, href("home", {}));
  addBook(&feed, *book, false);
  return feed.xml();
}

std::optional<std::string> StoreFeeds::related(long long id, const FeedParams &params) const {
  const auto book = catalogue_->book(store_, id);
  if (!book) return std::nullopt;
  BookQuery books;
  books.related_to = id;
  books.sort = params.sort;
  const std::string title = store_.language == "deu" ? "Ähnliche Bücher" : "You may also like";
  return bookList(feedId("related:" + std::to_string(id)), title, "related", {{"id", std::to_string(id)}}, books,
                  params);
}

std::optional<std::string> StoreFeeds::itemGenres(long long id) const {
  const auto book = catalogue_->book(store_, id);
  if (!book) return std::nullopt;
  FeedWriter feed(feedId("itemgenres:" + std::to_string(id)), book->title,
                  href("itemgenres", {{"id", std::to_string(id)}}), false);
  for (const auto &genre : catalogue_->genresOf(store_, id)) {
    const std::string target = href("genre", {{"id", genre.slug}});
    auto entry = feed.entry(feedId("genres::" + genre.slug), genre.name);
    FeedWriter::link(entry, "collection", FeedWriter::kAcquisitionType, target, genre.name);
    FeedWriter::link(entry, "subsection", FeedWriter::kAcquisitionType, target);
  }
  return feed.xml();
}

std::optional<std::string> StoreFeeds::series(long long id, const FeedParams &params) const {
  const auto title = catalogue_->seriesTitle(id);
  if (!title) return std::nullopt;
  BookQuery books;
  books.series_id = id;
  books.sort = "series";
  return bookList(feedId("series:" + std::to_string(id)), *title, "series", {{"id", std::to_string(id)}}, books,
                  params);
}

std::optional<std::string> StoreFeeds::collection(long long id) const {
  const auto found = catalogue_->collection(id);
  if (!found) return std::nullopt;
  BookQuery books;
  books.collection_id = id;
  return bookList(feedId("collection:" + std::to_string(id)), found->title, "collection", {{"id", std::to_string(id)}},
                  books, FeedParams{"", "", "popular", 1});
}

std::optional<std::string> StoreFeeds::author(long long id, const FeedParams &params) const {
  const auto name = catalogue_->authorName(id);
  if (!name) return std::nullopt;
  BookQuery books;
  books.author_id = id;
  books.sort = params.sort;
  return bookList(feedId("author:" + std::to_string(id)), *name, "author", {{"id", std::to_string(id)}}, books, params);
}

std::string StoreFeeds::search(const std::string &terms, const FeedParams &params) const {
  BookQuery books;
  books.search = terms;
  books.kind = params.kind == "audio" ? "audio" : "";
  books.sort = params.sort;
  const std::string title = (store_.language == "deu" ? "Suche: " : "Search: ") + terms;
  StoreFeeds deeper(*this);
  deeper.folder_ = "../";
  return deeper.bookList(feedId("search"), title, "opensearch/search", {{"q", terms}}, books, params);
}

std::string StoreFeeds::purchased(long long customerId, const FeedParams &params) const {
  BookQuery books;
  books.purchased_by = customerId;
  books.sort = params.sort == "popular" ? "title" : params.sort;
  return bookList(feedId("purchased"), store_.language == "deu" ? "Meine Bücher" : "My books", "purchased", {}, books,
                  params, true);
}

std::string StoreFeeds::wishlist(long long customerId, const FeedParams &params) const {
  BookQuery books;
  books.wished_by = customerId;
  books.sort = params.sort;
  return bookList(feedId("wishlist"), store_.language == "deu" ? "Wunschliste" : "Wish list", "wishlist", {}, books,
                  params);
}

std::string StoreFeeds::openSearchDescription() const {
  pugi::xml_document document;
  auto root = document.append_child("OpenSearchDescription");
  root.append_attribute("xmlns") = "http://a9.com/-/spec/opensearch/1.1/";
  root.append_child("ShortName").text().set(store_.name.c_str());
  root.append_child("Description").text().set("Books and audio books");
  root.append_child("InputEncoding").text().set("UTF-8");
  auto url = root.append_child("Url");
  url.append_attribute("type") = kAtom;
  url.append_attribute("template") = (feedPath("opensearch/search") + "?q={searchTerms}&page={startPage?}").c_str();
  std::ostringstream out;
  document.save(out, "", pugi::format_raw);
  return out.str();
}

std::string StoreFeeds::bookList(const std::string &id, const std::string &title, const std::string &path,
                                 const Query &query, const BookQuery &books, const FeedParams &params,
                                 bool owned) const {
  const BookPage page = catalogue_->books(store_, books, params.page);
  Query self = with(query, params, true);
  if (params.page > 1) self.emplace_back("page", std::to_string(params.page));
  FeedWriter feed(id, title, href(path, self), true);
  feed.link("start", FeedWriter::kNavigationType, href("home", {}));
  addSearchLinks(&feed);
  addPages(&feed, path, query, params, page.total, Catalogue::kPageSize);
  addFacets(&feed, path, query, params);
  for (const auto &book : page.books) addBook(&feed, book, owned);
  return feed.xml();
}

void StoreFeeds::addPages(FeedWriter *feed, const std::string &path, const Query &query, const FeedParams &params,
                          int total, int perPage) const {
  feed->paging(total, params.page, perPage);
  const auto page = [&](int number) {
    Query paged = with(query, params, true);
    if (number > 1) paged.emplace_back("page", std::to_string(number));
    return href(path, paged);
  };
  if (params.page * perPage < total) feed->link("next", FeedWriter::kAcquisitionType, page(params.page + 1));
  if (params.page > 1) feed->link("previous", FeedWriter::kAcquisitionType, page(params.page - 1));
  feed->link("first", FeedWriter::kAcquisitionType, page(1));
}

void StoreFeeds::addFacets(FeedWriter *feed, const std::string &path, const Query &query,
                           const FeedParams &params) const {
  const bool german = store_.language == "deu";
  for (const char *sort : {"popular", "new", "title", "price"}) {
    FeedParams sorted = params;
    sorted.sort = sort;
    feed->facet("Sorting", sortTitle(sort, german), href(path, with(query, sorted, true)), params.sort == sort);
  }
  FeedParams all = params;
  all.content.clear();
  feed->facet("Language", german ? "Alle Sprachen" : "All languages", href(path, with(query, all, true)),
              params.content.empty());
  for (const auto &language : vocabulary::languages()) {
    FeedParams one = params;
    one.content = language.code;
    feed->facet("Language", language.own, href(path, with(query, one, true)), params.content == language.code);
  }
}

void StoreFeeds::addSearchLinks(FeedWriter *feed) const {
  feed->link("search", "application/opensearchdescription+xml", href("opensearch.xml", {}), "Search");
  feed->link("search", kAtom, href("opensearch/search", {}) + "?q={searchTerms}", "Search");
}

void StoreFeeds::addRow(FeedWriter *feed, const std::string &id, const std::string &title,
                        const std::string &href) const {
  auto entry = feed->entry(id, title);
  FeedWriter::link(entry, "subsection", FeedWriter::kAcquisitionType, href, title);
}

void StoreFeeds::addBook(FeedWriter *feed, const BookRecord &book, bool owned) const {
  const std::string id = std::to_string(book.id);
  auto entry = feed->entry(id, book.title);
  FeedWriter::author(entry, book.author, href("author", {{"id", std::to_string(book.author_id)}}));
  FeedWriter::text(entry, "published", book.published + "T00:00:00Z");
  FeedWriter::text(entry, "dc:language", book.language);
  FeedWriter::text(entry, "dc:identifier", "ISBN:" + book.isbn);
  FeedWriter::text(entry, "dc:publisher", book.publisher);
  if (book.pages > 0) FeedWriter::text(entry, "dc:extent", std::to_string(book.pages) + " pages");
  FeedWriter::category(entry, book.genre_slug, book.genre_name);
  FeedWriter::html(entry, "summary", book.description);
  FeedWriter::text(entry, (std::string("lp:") + names::kKind).c_str(), book.kind);
  FeedWriter::text(entry, (std::string("lp:") + names::kStock).c_str(), book.in_stock ? "1" : "0");
  FeedWriter::text(entry, (std::string("lp:") + names::kRating).c_str(), decimal(book.rating));
  addBookLinks(entry, book, owned);
  addAcquisition(entry, book, owned);
}

void StoreFeeds::addBookLinks(pugi::xml_node entry, const BookRecord &book, bool owned) const {
  const std::string id = std::to_string(book.id);
  FeedWriter::link(entry, "alternate", FeedWriter::kEntryType, href("item", {{"id", id}}));
  FeedWriter::link(entry, "http://opds-spec.org/image", "image/jpeg", coverPath(book.id));
  FeedWriter::link(entry, "http://opds-spec.org/image/thumbnail", "image/jpeg", coverPath(book.id));
  if (!owned) {
    const bool german = store_.language == "deu";
    FeedWriter::link(entry, "related", FeedWriter::kAcquisitionType, href("related", {{"id", id}}),
                     german ? "Ähnliche Bücher" : "You may also like");
    FeedWriter::link(entry, names::kGenresRel, FeedWriter::kNavigationType, href("itemgenres", {{"id", id}}), "Genres");
  }
  if (book.series_id) {
    FeedWriter::link(entry, names::kSeriesRel, FeedWriter::kAcquisitionType,
                     href("series", {{"id", std::to_string(book.series_id)}}), book.series_title);
  }
}

void StoreFeeds::addAcquisition(pugi::xml_node entry, const BookRecord &book, bool owned) const {
  const std::string id = std::to_string(book.id);
  const bool free = book.price <= 0;
  if (owned || free) {
    const bool token = owned && book.acsm;
    auto link = FeedWriter::link(entry, std::string(kAcquisitionRel) + "/open-access", token ? kAcsm : book.format,
                                 href("../download", {{"id", id}}));
    if (token) FeedWriter::indirect(link, {book.format.c_str()});
    if (owned) return;
  }
  if (!free) {
    auto buy = FeedWriter::link(entry, std::string(kAcquisitionRel) + "/buy", "text/html", href("item", {{"id", id}}));
    FeedWriter::price(buy, book.currency, book.price, book.old_price, book.series_min_books, book.series_discount);
    if (book.acsm) {
      FeedWriter::indirect(buy, {kAcsm, book.format.c_str()});
    } else {
      FeedWriter::indirect(buy, {book.format.c_str()});
    }
    FeedWriter::link(entry, std::string(kAcquisitionRel) + "/sample", book.format, href("../sample", {{"id", id}}));
  }
}

void StoreFeeds::addCollection(FeedWriter *feed, const CollectionRecord &collection, const FeedParams &params) const {
  auto entry = feed->entry("urn:lumenpress:collection:" + std::to_string(collection.id), collection.title);
  FeedWriter::html(entry, "summary", collection.description);
  FeedWriter::text(entry, (std::string("lp:") + names::kKind).c_str(), "grouped");
  auto images = entry.append_child((std::string("lp:") + names::kGroupedImages).c_str());
  double total = 0;
  for (long long bookId : collection.book_ids) {
    images.append_child((std::string("lp:") + names::kGroupedImage).c_str()).append_attribute("href") =
        coverPath(bookId).c_str();
    if (const auto book = catalogue_->book(store_, bookId)) total += book->price;
  }
  const std::string target = href("collection", with({{"id", std::to_string(collection.id)}}, params, false));
  FeedWriter::link(entry, "subsection", FeedWriter::kAcquisitionType, target, collection.title);
  if (!collection.book_ids.empty()) {
    FeedWriter::link(entry, "http://opds-spec.org/image", "image/jpeg", coverPath(collection.book_ids.front()));
  }
  auto buy = FeedWriter::link(entry, std::string(kAcquisitionRel) + "/buy", "text/html", target);
  FeedWriter::price(buy, store_.currency, total, 0);
}

}  // namespace devstore
