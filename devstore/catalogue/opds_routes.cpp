#include "opds_routes.h"

#include "book_files.h"
#include "entity_tag.h"
#include "json_text.h"
#include "url_encoding.h"

namespace devstore {

namespace {

const char kAtomType[] = "application/atom+xml;charset=utf-8";
const char kOpenSearchType[] = "application/opensearchdescription+xml";
const char kAcsmType[] = "application/vnd.adobe.adept+xml";
const char kStorePattern[] = "/([a-z]{2}_[a-z]{2})/lpress/";

std::optional<long long> idParam(const httplib::Request &request) {
  const std::string text = request.get_param_value("id");
  if (text.empty() || text.size() > 18 || text.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  return std::stoll(text);
}

// The client's list parameters, or nothing when one of them makes no sense.
std::optional<FeedParams> feedParams(const httplib::Request &request, const std::string &feed) {
  FeedParams params;
  params.kind = request.get_param_value(feed == "genres" ? "productType" : "kind");
  if (feed == "audio") params.kind = "audio";
  params.content = request.get_param_value("content");
  params.sort = request.has_param("sort") ? request.get_param_value("sort") : "popular";
  const std::string page = request.get_param_value("page");
  if (!page.empty()) {
    if (page.size() > 6 || page.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    params.page = std::stoi(page);
  }
  const bool knownSort =
      params.sort == "popular" || params.sort == "new" || params.sort == "title" || params.sort == "price";
  if (!knownSort || params.page < 1 || (!params.kind.empty() && params.kind != "audio" && params.kind != "ebook")) {
    return std::nullopt;
  }
  return params;
}

std::string contentDisposition(const std::string &name) {
  std::string ascii;
  for (unsigned char c : name) ascii += (c < 0x80 && c != '"' && c != '\\') ? static_cast<char>(c) : '_';
  return "attachment; filename=\"" + ascii + "\"; filename*=UTF-8''" + UrlEncoding::encode(name);
}

}  // namespace

OpdsRoutes::OpdsRoutes(const Catalogue *catalogue, const TokenStore *tokens) : catalogue_(catalogue), tokens_(tokens) {}

void OpdsRoutes::install(httplib::Server *server) {
  const std::string store = kStorePattern;
  const auto feed = [this](const httplib::Request &req, httplib::Response &res) { serveFeed(req, res); };
  const auto suggest = [this](const httplib::Request &req, httplib::Response &res) { serveSuggestions(req, res); };
  const auto file = [this](const httplib::Request &req, httplib::Response &res) { serveFile(req, res); };
  server->Get(store + "opds/suggest/?", suggest);
  server->Post(store + "opds/suggest/?", suggest);
  server->Get(store + "opds/([a-z]+(?:\\.xml)?|opensearch/search)", feed);
  server->Get(store + "(download|sample)", file);
  server->Get("/covers/(\\d+)\\.jpg",
              [this](const httplib::Request &req, httplib::Response &res) { serveCover(req, res); });
  server->Get("/", [this](const httplib::Request &req, httplib::Response &res) { serveIndex(req, res); });
}

// Public feeds are the same for everyone until the catalogue changes; a signed-in customer's
// are written anew for every request, so that they are exact after each purchase or wish.
void OpdsRoutes::serveFeed(const httplib::Request &request, httplib::Response &response) const {
  const std::string name = request.matches[2];
  const char *type = name == "opensearch.xml" ? kOpenSearchType : kAtomType;
  const auto write = [&] { return feedBody(name, request, response); };
  if (name == "purchased" || name == "wishlist") {
    const auto body = write();
    if (body) sendVersioned(request, response, *body, EntityTag::of(*body), type);
    return;
  }
  const auto kept = public_feeds_.find(request.target, write);
  if (kept) sendVersioned(request, response, kept->body, kept->tag, type);
}

std::optional<std::string> OpdsRoutes::feedBody(const std::string &name, const httplib::Request &request,
                                                httplib::Response &response) const {
  const auto store = catalogue_->store(request.matches[1]);
  if (!store) {
    sendError(response, 404, "no such store");
    return std::nullopt;
  }
  const StoreFeeds feeds(catalogue_, *store);
  if (name == "opensearch.xml") return feeds.openSearchDescription();
  return feed(feeds, name, request, response);
}

std::optional<std::string> OpdsRoutes::feed(const StoreFeeds &feeds, const std::string &name,
                                            const httplib::Request &request, httplib::Response &response) const {
  const auto params = feedParams(request, name);
  if (!params) {
    sendError(response, 400, "bad kind, sort or page");
    return std::nullopt;
  }
  if (name == "home" || name == "audio") return feeds.home(*params);
  if (name == "genres") return feeds.genres(*params);
  if (name == "opensearch/search") return feeds.search(request.get_param_value("q"), *params);
  if (name == "purchased" || name == "wishlist") return signedInFeed(feeds, name, request, response);
  std::optional<std::string> body;
  const auto id = idParam(request);
  if (name == "list") body = feeds.list(request.get_param_value("name"), *params);
  if (name == "genre") body = feeds.genre(request.get_param_value("id"), *params);
  if (id && name == "item") body = feeds.item(*id);
  if (id && name == "related") body = feeds.related(*id, *params);
  if (id && name == "itemgenres") body = feeds.itemGenres(*id);
  if (id && name == "series") body = feeds.series(*id, *params);
  if (id && name == "collection") body = feeds.collection(*id);
  if (id && name == "author") body = feeds.author(*id, *params);
  if (!body) sendError(response, 404, "no such feed");
  return body;
}

std::optional<std::string> OpdsRoutes::signedInFeed(const StoreFeeds &feeds, const std::string &name,
                                                    const httplib::Request &request,
                                                    httplib::Response &response) const {
  const auto customer = tokens_->customerFor(request.get_header_value("Authorization"));
  if (!customer) {
    response.set_header("WWW-Authenticate", "Bearer realm=\"store\"");
    sendError(response, 401, "sign in first");
    return std::nullopt;
  }
  const auto params = feedParams(request, name);
  return name == "purchased" ? feeds.purchased(*customer, *params) : feeds.wishlist(*customer, *params);
}

void OpdsRoutes::serveSuggestions(const httplib::Request &request, httplib::Response &response) const {
  const auto store = catalogue_->store(request.matches[1]);
  if (!store) return sendError(response, 404, "no such store");
  const std::string term = request.get_param_value("q");
  Json::Value list(Json::arrayValue);
  for (const auto &text : catalogue_->matchingTerms(term, 5)) {
    Json::Value item(Json::objectValue);
    item["type"] = "term";
    item["title"] = text;
    list.append(item);
  }
  BookQuery query;
  query.search = term;
  const auto books = term.empty() ? BookPage{} : catalogue_->books(*store, query, 1);
  const StoreFeeds feeds(catalogue_, *store);
  for (size_t i = 0; i < books.books.size() && i < 5; ++i) {
    const BookRecord &book = books.books[i];
    Json::Value item(Json::objectValue);
    item["type"] = "product";
    item["title"] = book.title;
    item["author"] = book.author;
    item["image"] = origin(request) + StoreFeeds::coverPath(book.id);
    item["urlOpds"] = origin(request) + feeds.feedPath("item?id=" + std::to_string(book.id));
    list.append(item);
  }
  response.set_content(JsonText::write(list), "application/json");
}

void OpdsRoutes::serveFile(const httplib::Request &request, httplib::Response &response) const {
  const auto store = catalogue_->store(request.matches[1]);
  const auto id = idParam(request);
  const auto book = store && id ? catalogue_->book(*store, *id) : std::nullopt;
  if (!book) return sendError(response, 404, "no such book");
  const bool sample = request.matches[2] == "sample";
  if (!sample && book->price > 0) {
    const auto customer = tokens_->customerFor(request.get_header_value("Authorization"));
    const std::string key = request.get_param_value("key");
    const auto purchase = catalogue_->purchase(*id, customer.value_or(0), key);
    if (!purchase) {
      response.set_header("WWW-Authenticate", "Bearer realm=\"store\"");
      return sendError(response, customer || !key.empty() ? 403 : 401, "buy the book first");
    }
    if (book->acsm && key.empty()) {
      const std::string source =
          origin(request) + "/" + store->code + "/lpress/download?id=" + std::to_string(*id) + "&key=" + *purchase;
      response.set_header("Content-Disposition", contentDisposition(book->title + ".acsm"));
      return response.set_content(BookFiles::acsmToken(*book, source), kAcsmType);
    }
  }
  response.set_header("Content-Disposition", contentDisposition(BookFiles::fileName(*book, sample)));
  response.set_content(BookFiles::make(*book, sample), book->format.c_str());
}

void OpdsRoutes::serveCover(const httplib::Request &request, httplib::Response &response) const {
  const std::string id = request.matches[1];
  const auto jpeg = id.size() < 18 ? catalogue_->cover(std::stoll(id)) : std::nullopt;
  if (!jpeg) return sendError(response, 404, "no such cover");
  response.set_header("Cache-Control", "max-age=86400");
  sendVersioned(request, response, *jpeg, EntityTag::of(*jpeg), "image/jpeg");
}

void OpdsRoutes::serveIndex(const httplib::Request &request, httplib::Response &response) const {
  std::string text = "devstore: the local storefront\n\n";
  for (const auto &store : catalogue_->stores()) {
    const std::string base = origin(request) + "/" + store.code + "/lpress/opds/";
    text += store.name + " (" + store.currency + "):\n  " + base + "home\n  " + base + "audio\n  " + base + "genres\n";
  }
  text += "\nControl interface: " + origin(request) + "/_control/requests\n";
  response.set_content(text, "text/plain; charset=utf-8");
}

void OpdsRoutes::sendVersioned(const httplib::Request &request, httplib::Response &response, const std::string &body,
                               const std::string &tag, const char *type) {
  response.set_header("ETag", tag);
  if (request.get_header_value("If-None-Match") == tag) {
    response.status = 304;
    return;
  }
  response.set_content(body, type);
}

void OpdsRoutes::sendError(httplib::Response &response, int status, const std::string &message) {
  response.status = status;
  response.set_content(message + "\n", "text/plain; charset=utf-8");
}

std::string OpdsRoutes::origin(const httplib::Request &request) {
  return "http://" + request.get_header_value("Host");
}

}  // namespace devstore
