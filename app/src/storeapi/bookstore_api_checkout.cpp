// The calls a purchase strings together: cart, checks, order, its source and status, and the
// price of a series.
#include <sstream>

#include "bookstore_api.h"
#include "http_request_runner.h"
#include "json_member.h"
#include "lp_log.h"
#include "response_body.h"

using lumenpress::bookstore::JsonMember;
using lumenpress::bookstore::ResponseBody;
using lumenpress::utilities::HttpRequestRunner;

namespace {

// Cut at each comma as std::getline does: no trimming, and no empty item after a last comma.
Json::Value agreementIds(const std::string &ids) {
  Json::Value list(Json::arrayValue);
  std::istringstream stream(ids);
  for (std::string id; std::getline(stream, id, ',');) list.append(id);
  return list;
}

std::string utf8(const QString &text) {
  return text.toUtf8().toStdString();
}

}  // namespace

BookstoreApi::ApiError BookstoreApi::createQuote(std::string *quoteId) {
  return createQuoteImpl(true, quoteId);
}

BookstoreApi::ApiError BookstoreApi::createQuoteImpl(bool retryOnUnauthorized, std::string *quoteId) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  HttpRequest request = newRequest("POST", "/rest/V1/carts/mine");
  request.AddHeader("Content-Type", "application/json");
  addSharedHeaders(&request, token);
  const auto answered = [quoteId](const std::vector<char> &response) {
    ResponseBody::unquote(response, quoteId);
    return kNoError;
  };
  return perform(retryOnUnauthorized, token, request, {"createQuoteImpl"}, answered,
                 [this, quoteId] { return createQuoteImpl(false, quoteId); });
}

BookstoreApi::ApiError BookstoreApi::clearCart(std::string *result) {
  return clearCartImpl(true, result);
}

BookstoreApi::ApiError BookstoreApi::clearCartImpl(bool retryOnUnauthorized, std::string *result) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["access_token"] = token;
  const auto answered = [result](const std::vector<char> &response) {
    if (response.size() >= 3) *result = ResponseBody::text(response);
    return kNoError;
  };
  return perform(retryOnUnauthorized, token, authorisedPost("/rest/V1/customer-check/cart", token, body),
                 {"clearCartImpl"}, answered, [this, result] { return clearCartImpl(false, result); });
}

BookstoreApi::ApiError BookstoreApi::checkBook(const PurchaseBooksCol &books, bool *purchased) {
  return checkBookImpl(true, books, purchased);
}

BookstoreApi::ApiError BookstoreApi::checkBookImpl(bool retryOnUnauthorized, const PurchaseBooksCol &books,
                                                   bool *purchased) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["access_token"] = token;
  body["bookId"] = utf8(books.first().id);
  if (books.size() >= 2) {
    for (const auto &book : books) body["ids"].append(utf8(book.id));
  }
  const auto answered = [purchased](const std::vector<char> &response) {
    *purchased = ResponseBody::text(response) == "true";
    return kNoError;
  };
  return perform(retryOnUnauthorized, token, authorisedPost("/rest/V1/customer-check/purchase", token, body),
                 {"checkBookImpl", true, false}, answered,
                 [this, &books, purchased] { return checkBookImpl(false, books, purchased); });
}

BookstoreApi::ApiError BookstoreApi::checkOutCheck(const PurchaseBooksCol &books, std::string email, bool *salable) {
  return checkOutCheckImpl(books, std::move(email), salable);
}

// A 401 here ends the check: the purchase that asks has just used the token.
BookstoreApi::ApiError BookstoreApi::checkOutCheckImpl(const PurchaseBooksCol &books, std::string email,
                                                       bool *salable) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["sku"] = utf8(books.first().sku);
  body["email"] = email;
  if (books.size() >= 2) {
    for (const auto &book : books) body["skus"].append(utf8(book.sku));
  }
  const auto answered = [salable](const std::vector<char> &response) {
    Json::Value answer;
    if (!ResponseBody::parse(response, &answer)) {
      LP_LOG(LP_LOG_ERROR, "Failed to parse json %s", ResponseBody::text(response).c_str());
      return kFail;
    }
    *salable = JsonMember::flag(JsonMember::element(answer, 0), "is_salable");
    return kNoError;
  };
  return perform(false, token, authorisedPost("/rest/V1/carts/mine/opds-checkout-check", token, body),
                 {"checkOutCheckImpl", true, false}, answered, nullptr);
}

BookstoreApi::ApiError BookstoreApi::addToCart(const std::string &quoteId, const PurchaseBooksCol &books) {
  return addToCartImpl(quoteId, books, true);
}

BookstoreApi::ApiError BookstoreApi::addToCartImpl(const std::string &quoteId, const PurchaseBooksCol &books,
                                                   bool retryOnUnauthorized) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["quote_id"] = quoteId;
  for (const auto &book : books) {
    Json::Value item;
    item["qty"] = "1";
    item["quote_id"] = quoteId;
    item["sku"] = utf8(book.sku);
    body["cart_items"].append(item);
  }
  return perform(
      retryOnUnauthorized, token, authorisedPost("/rest/V1/device-payment/mine/items", token, body),
      {"createQuoteImpl"}, [](const std::vector<char> &) { return kNoError; },
      [this, &quoteId, &books] { return addToCartImpl(quoteId, books, false); });
}

BookstoreApi::ApiError BookstoreApi::createOrder(const UserInfo &user, const PaymentMethodInfo &method,
                                                 std::string *orderId) {
  return createOrderImpl(user, method, true, orderId);
}

BookstoreApi::ApiError BookstoreApi::createOrderImpl(const UserInfo &user, const PaymentMethodInfo &method,
                                                     bool retryOnUnauthorized, std::string *orderId) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["paymentMethod"]["method"] = method.method;
  if (!method.agreement_ids.empty()) {
    body["paymentMethod"]["extension_attributes"]["agreement_ids"] = agreementIds(method.agreement_ids);
  }
  Json::Value &address = body["billing_address"];
  address["email"] = user.email;
  address["region_id"] = method.region_id;
  address["country_id"] = method.country_id;
  address["street"].append(method.street);
  address["postcode"] = method.postcode;
  address["city"] = method.city;
  address["telephone"] = method.telephone;
  address["firstname"] = user.firstname;
  address["lastname"] = user.lastname;
  const auto answered = [orderId](const std::vector<char> &response) {
    ResponseBody::unquote(response, orderId);
    return kNoError;
  };
  return perform(retryOnUnauthorized, token, authorisedPost("/rest/V1/carts/mine/payment-information", token, body),
                 {"createQuoteImpl"}, answered,
                 [this, &user, &method, orderId] { return createOrderImpl(user, method, false, orderId); });
}

BookstoreApi::ApiError BookstoreApi::setPaymentSource(const std::string &orderId) {
  return setPaymentSourceImpl(orderId);
}

BookstoreApi::ApiError BookstoreApi::setPaymentSourceImpl(const std::string &orderId) {
  HttpRequest request = newRequest("POST", "/rest/V1/device-integration/set-source");
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["accessToken"] = token;
  body["orderId"] = orderId;
  body["source"] = paymentSource();
  addJsonBody(&request, body);
  addSharedHeaders(&request, token);
  long code = 0;
  std::vector<char> response;
  const int err = HttpRequestRunner().PerformRequest(request, &code, &response, kTimeoutSeconds);
  if (err == 0 && code == 200) return kNoError;
  LP_LOG(LP_LOG_ERROR, "checkUser failed err = %d, code = %d", err, static_cast<int>(code));
  reportError(err, code);
  return kFail;
}

BookstoreApi::ApiError BookstoreApi::getPaymentStatus(const std::string &orderId, const std::string &quoteId,
                                                      std::string *status) {
  return getPaymentStatusImpl(orderId, quoteId, true, status);
}

BookstoreApi::ApiError BookstoreApi::getPaymentStatusImpl(const std::string &orderId, const std::string &quoteId,
                                                          bool retryOnUnauthorized, std::string *status) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  Json::Value body;
  body["accessToken"] = token;
  body["quoteId"] = quoteId;
  body["source"] = paymentSource();
  const auto answered = [status](const std::vector<char> &response) {
    ResponseBody::unquote(response, status);
    return kNoError;
  };
  // The status is polled; a lost connection is left to the next poll, not reported.
  return perform(retryOnUnauthorized, token, authorisedPost("/rest/V1/customer-get/order-status", token, body),
                 {"createQuoteImpl", false, true}, answered,
                 [this, &orderId, &quoteId, status] { return getPaymentStatusImpl(orderId, quoteId, false, status); });
}

// Needs no user: a series is priced for anybody who looks at it.
BookstoreApi::ApiError BookstoreApi::getGroupedProductCount(const QVector<QString> &ids, QString *result) {
  Json::Value body;
  for (const QString &id : ids) body["ids"].append(utf8(id));
  HttpRequest request = newRequest("POST", "/rest/V1/grouped-product/count");
  addJsonBody(&request, body);
  request.AddHeader("Content-Type", "application/json");
  long code = 0;
  std::vector<char> response;
  const ApiError error = performRequestWithRefreshing(request, &code, &response);
  if (error != kNoError) return error;
  Json::Value price;
  if (!ResponseBody::parse(response, &price)) return kFail;
  if (response.size() >= 2) *result = QString::fromUtf8(response.data(), static_cast<int>(response.size() - 1));
  return kNoError;
}
