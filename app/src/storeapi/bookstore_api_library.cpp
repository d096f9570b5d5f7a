// The books bought, the wish list, and the suggestions shown while a search is typed.
#include "bookstore_api.h"
#include "http_request_runner.h"
#include "json_member.h"
#include "lp_log.h"
#include "response_body.h"

using lumenpress::bookstore::JsonMember;
using lumenpress::bookstore::ResponseBody;
using lumenpress::utilities::HttpRequestRunner;

namespace {

// The wish list answers a bare true; anything else leaves the wish undone, but is no error.
BookstoreApi::ApiError readDone(const std::vector<char> &response, bool *done) {
  *done = ResponseBody::text(response) == "true";
  return BookstoreApi::kNoError;
}

}  // namespace

BookstoreApi::ApiError BookstoreApi::getPurchased(std::vector<BookItem> *books) {
  return getPurchasedImpl(true, books);
}

BookstoreApi::ApiError BookstoreApi::getPurchasedImpl(bool retryOnUnauthorized, std::vector<BookItem> *books) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["access_token"] = token;
  const auto answered = [books](const std::vector<char> &response) {
    Json::Value list;
    ResponseBody::parse(response, &list);
    if (!list.isArray()) {
      LP_LOG(LP_LOG_ERROR, "Invalid response format");
      return kFail;
    }
    if (!books) return kNoError;
    for (const Json::Value &item : list) {
      books->push_back(
          {JsonMember::text(item, "item_id"), JsonMember::text(item, "name"), JsonMember::text(item, "author")});
    }
    return kNoError;
  };
  return perform(retryOnUnauthorized, token, authorisedPost("/rest/V1/customer-get/purchases", token, body),
                 {"getPurchasedImpl"}, answered, [this, books] { return getPurchasedImpl(false, books); });
}

BookstoreApi::ApiError BookstoreApi::addToWishList(const std::string &productId, bool *done) {
  return addToWishListImpl(true, productId, done);
}

BookstoreApi::ApiError BookstoreApi::addToWishListImpl(bool retryOnUnauthorized, const std::string &productId,
                                                       bool *done) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["access_token"] = token;
  body["productId"] = productId;
  return perform(
      retryOnUnauthorized, token, authorisedPost("/rest/V1/customer-add/wishlist", token, body),
      {"createQuoteImpl", true, false}, [done](const std::vector<char> &response) { return readDone(response, done); },
      [this, &productId, done] { return addToWishListImpl(false, productId, done); });
}

BookstoreApi::ApiError BookstoreApi::removeFromWishList(const std::shared_ptr<PurchaseBooksCol> books, bool *done) {
  return removeFromWishListImpl(true, books, done);
}

BookstoreApi::ApiError BookstoreApi::removeFromWishListImpl(bool retryOnUnauthorized,
                                                            const std::shared_ptr<PurchaseBooksCol> books, bool *done) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["access_token"] = token;
  body["productId"] = books->first().id.toStdString();
  body["ids"] = Json::Value(Json::arrayValue);
  for (const auto &book : *books) body["ids"].append(book.id.toStdString());
  return perform(
      retryOnUnauthorized, token, authorisedPost("/rest/V1/customer-remove-from/wishlist", token, body),
      {"createQuoteImpl", true, false}, [done](const std::vector<char> &response) { return readDone(response, done); },
      [this, books, done] { return removeFromWishListImpl(false, books, done); });
}

BookstoreApi::ApiError BookstoreApi::getSearchSuggestion(std::string &term,
                                                         std::vector<SearchSuggestionInfo> *suggestions) {
  return getSearchSuggestionImpl(term, suggestions);
}

// Suggestions need no user, so no token goes along and a 401 is just a failure.
BookstoreApi::ApiError BookstoreApi::getSearchSuggestionImpl(std::string &term,
                                                             std::vector<SearchSuggestionInfo> *suggestions) {
  HttpRequest request = newRequest("POST", "/lpress/opds/suggest/");
  request.AddGetParam("q", term);
  long code = 0;
  std::vector<char> response;
  if (HttpRequestRunner().PerformRequest(request, &code, &response, kTimeoutSeconds) != 0) return kNetworkError;
  if (code != 200) return kHttpError;
  Json::Value list;
  if (!ResponseBody::parse(response, &list)) {
    LP_LOG(LP_LOG_ERROR, "Failed to parse json %s", ResponseBody::text(response).c_str());
    return kFail;
  }
  LP_LOG(LP_LOG_INFO, "+++ %s", list.isArray() ? "true" : "false");
  for (const Json::Value &item : list) {
    const std::string type = JsonMember::text(item, "type");
    if (type != "term" && type != "product") continue;
    suggestions->push_back({type, JsonMember::text(item, "title"), JsonMember::text(item, "author"),
                            JsonMember::text(item, "image"), JsonMember::text(item, "urlOpds")});
    LP_LOG(LP_LOG_INFO, "TERM FIND %s", suggestions->back().title.c_str());
  }
  return kNoError;
}
