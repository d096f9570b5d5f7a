// What of devstore's REST interface the client's own tests do not reach: the login lock, the
// payment page, the gateway's refusals, checks of what cannot be sold, the wish list as its
// feed shows it, and the frame's refusals.
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "devstore_process.h"
#include "http_request.h"
#include "http_request_runner.h"
#include "json_text.h"

using devstore::JsonText;
using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::HttpAnswer;

namespace {

// From the fixed seed: a free e-book and paid ones nobody owns, and a book out of stock.
const char kFreeBook[] = "18";
const char kPaidBook[] = "2";
const char kOtherPaidBook[] = "91";
const char kOutOfStock[] = "43";
const char kEmail[] = "reader@example.com";

Json::Value parsed(const std::string &text) {
  Json::Value value;
  JsonText::parse(text, &value);
  return value;
}

class RestTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store_.running());
    token_ = store_.accessToken();
  }

  HttpAnswer post(const std::string &url, const std::string &body, const std::string &token,
                  const char *type = "application/json") const {
    lumenpress::utilities::HttpRequest request("POST", url);
    if (type) request.AddHeader("Content-Type", type);
    if (!token.empty()) request.AddHeader("Authorization", "Bearer " + token);
    request.AddPostData(body);
    HttpAnswer answer;
    std::vector<char> bytes;
    answer.error = lumenpress::utilities::HttpRequestRunner().PerformRequest(request, &answer.status, &bytes, 30);
    if (!bytes.empty()) answer.body.assign(bytes.data(), bytes.size() - 1);
    return answer;
  }

  HttpAnswer rest(const std::string &path, const Json::Value &body, const std::string &token = "") const {
    return post(store_.url("/de_de/rest/V1/" + path), body.isNull() ? "" : JsonText::write(body), token);
  }
  HttpAnswer rest(const std::string &path) const { return rest(path, Json::Value(Json::objectValue), token_); }

  // A bare JSON string without its quotes, as the client cuts it.
  static std::string unquoted(const HttpAnswer &answer) {
    EXPECT_EQ(answer.status, 200) << answer.body;
    EXPECT_GE(answer.body.size(), 2u);
    EXPECT_EQ(answer.body.front(), '"');
    EXPECT_EQ(answer.body.back(), '"');
    return answer.body.size() < 2 ? "" : answer.body.substr(1, answer.body.size() - 2);
  }

  std::set<std::string> feedIds(const std::string &feed) const {
    const auto answer = store_.get(store_.opds() + feed, {"Authorization: Bearer " + token_});
    EXPECT_EQ(answer.status, 200);
    std::set<std::string> ids;
    static const std::regex id("<id>(\\d+)</id>");
    for (std::sregex_iterator i(answer.body.begin(), answer.body.end(), id), end; i != end; ++i) ids.insert((*i)[1]);
    return ids;
  }

  // An emptied cart with these books in it; its id.
  std::string cartWith(const std::vector<std::string> &books) const {
    EXPECT_EQ(rest("customer-check/cart").body, "true");
    const std::string quote = unquoted(rest("carts/mine"));
    Json::Value body;
    body["quote_id"] = quote;
    for (const auto &sku : books) {
      Json::Value item;
      item["qty"] = "1";
      item["quote_id"] = quote;
      item["sku"] = sku;
      body["cart_items"].append(item);
    }
    EXPECT_EQ(rest("device-payment/mine/items", body, token_).status, 200);
    return quote;
  }

  HttpAnswer placeOrder(const std::string &method) const {
    Json::Value body;
    body["paymentMethod"]["method"] = method;
    body["billing_address"]["email"] = kEmail;
    body["billing_address"]["street"].append("Musterstraße 1");
    return rest("carts/mine/payment-information", body, token_);
  }

  std::string status(const std::string &quote) const {
    Json::Value body;
    body["accessToken"] = token_;
    body["quoteId"] = quote;
    body["source"] = "e-ink 740-2";
    return unquoted(rest("customer-get/order-status", body, token_));
  }

  bool owns(const std::string &book) const {
    Json::Value body;
    body["bookId"] = book;
    return rest("customer-check/purchase", body, token_).body == "true";
  }

  void setBrowser(const char *mode) const {
    EXPECT_EQ(store_.send("POST", "/_control/payments", std::string("{\"browser\":\"") + mode + "\"}").status, 204);
  }

  HttpAnswer login(const std::string &password) const {
    Json::Value body;
    body["email"] = kEmail;
    body["password"] = password;
    body["device_id"] = "PB740-2-0001";
    return rest("user-get/tokens", body);
  }

  DevstoreProcess store_;
  std::string token_;
};

TEST_F(RestTest, RepeatedWrongPasswordsLockTheAccount) {
  for (int i = 0; i < 5; ++i) EXPECT_EQ(parsed(login("wrong").body)["code"].asInt(), 1);
  const auto locked = login("reader");
  EXPECT_EQ(locked.status, 401);
  EXPECT_EQ(parsed(locked.body)["code"].asInt(), 2);
}

TEST_F(RestTest, PaidBookWaitsForThePaymentPage) {
  setBrowser("ask");
  const std::string quote = cartWith({kPaidBook});
  EXPECT_EQ(placeOrder("free").status, 400) << "a cart that costs money is not free";
  const std::string order = unquoted(placeOrder("paypal"));
  EXPECT_EQ(status(quote), "pending");
  EXPECT_EQ(feedIds("purchased").count(kPaidBook), 0u);

  // The device opens the method's link with the cart and the order appended.
  const auto methods = parsed(store_.get("/de_de/rest/V1/device-payment/methods?number=1").body);
  std::string link;
  for (const auto &method : methods) link = method["method"] == "paypal" ? method["link"].asString() : link;
  const std::string page = link + "quote=" + quote + "&order=" + order;
  EXPECT_NE(store_.get(page).body.find("<form"), std::string::npos);
  EXPECT_EQ(status(quote), "pending");

  const auto paid = post(page, "decision=complete", "", nullptr);
  EXPECT_EQ(paid.status, 303);
  EXPECT_NE(paid.body.find("/de_de/lpress/payment/done"), std::string::npos);
  EXPECT_EQ(status(quote), "complete");
  EXPECT_EQ(feedIds("purchased").count(kPaidBook), 1u);
  EXPECT_EQ(post(page, "decision=cancel", "", nullptr).status, 303);
  EXPECT_EQ(status(quote), "complete") << "a decided order stays decided";

  // Bought once, the book cannot go into a cart again.
  const std::string again = unquoted(rest("carts/mine"));
  Json::Value items;
  items["quote_id"] = again;
  items["cart_items"][0]["sku"] = kPaidBook;
  EXPECT_EQ(rest("device-payment/mine/items", items, token_).status, 400);
}

TEST_F(RestTest, PaymentPageMakesTheOrderOfACardCartAndCanCancelIt) {
  // Card payments in the browser come without an order: the page makes it.
  setBrowser("cancel");
  std::string quote = cartWith({kPaidBook});
  EXPECT_EQ(status(quote), "pending");
  EXPECT_EQ(store_.get("/de_de/lpress/payment?method=hgwcc&quote_id=" + quote).status, 303);
  EXPECT_EQ(status(quote), "cancel");
  EXPECT_FALSE(owns(kPaidBook));

  setBrowser("complete");
  quote = cartWith({kPaidBook});
  EXPECT_EQ(store_.get("/de_de/lpress/payment?method=hgwsue&quote_id=" + quote).status, 303);
  EXPECT_EQ(status(quote), "complete");
  EXPECT_TRUE(owns(kPaidBook));
  EXPECT_EQ(store_.get("/de_de/lpress/payment?method=hgwcc&quote_id=999").status, 404);
}

TEST_F(RestTest, ChecksRefuseWhatCannotBeSold) {
  Json::Value check;
  check["sku"] = kOutOfStock;
  check["skus"].append(kOutOfStock);
  check["skus"].append(kFreeBook);
  const auto salable = parsed(rest("carts/mine/opds-checkout-check", check, token_).body);
  ASSERT_EQ(salable.size(), 2u);
  EXPECT_FALSE(salable[0]["is_salable"].asBool());
  EXPECT_TRUE(salable[1]["is_salable"].asBool());
  check["sku"] = "999999";
  check.removeMember("skus");
  EXPECT_EQ(rest("carts/mine/opds-checkout-check", check, token_).status, 404);

  const std::string quote = unquoted(rest("carts/mine"));
  Json::Value items;
  items["quote_id"] = quote;
  items["cart_items"][0]["sku"] = kOutOfStock;
  EXPECT_EQ(rest("device-payment/mine/items", items, token_).status, 400);
  items["quote_id"] = "999";
  items["cart_items"][0]["sku"] = kFreeBook;
  EXPECT_EQ(rest("device-payment/mine/items", items, token_).status, 404) << "another's cart";
  EXPECT_EQ(placeOrder("free").status, 400) << "an empty cart";
  cartWith({kFreeBook});
  EXPECT_EQ(placeOrder("bitcoin").status, 400);
}

// Approved cards, the form's unescaped fields and kept cards are tested through the client;
// here the gateway's refusals.
TEST_F(RestTest, GatewayRefusesCardsThatDoNotCheckOutOrAreDeclined) {
  const auto pay = [&](const std::string &number) {
    cartWith({kPaidBook});
    const std::string order = unquoted(placeOrder("payonlinepaymentmethod"));
    Json::Value body;
    body["orderId"] = order;
    body["rebillRemember"] = false;
    body["rebillCard"] = "";
    const std::string link = parsed(rest("payonline/get-link", body, token_).body).asString();
    const auto question = link.find('?');
    EXPECT_NE(question, std::string::npos);
    return post(link.substr(0, question),
                link.substr(question + 1) + "&CardHolderName=Cardholder Name&CardNumber=" + number +
                    "&CardExpDate=12/49&CardCvv=123&Issure= &Email=" + kEmail,
                "", nullptr);
  };
  const auto invalid = pay("4111111111111112");
  EXPECT_EQ(invalid.status, 200);
  EXPECT_EQ(invalid.body.rfind("Code=400", 0), 0u) << invalid.body;
  EXPECT_EQ(pay("4000000000000002").body.rfind("Code=402", 0), 0u);
  EXPECT_FALSE(owns(kPaidBook));
  EXPECT_EQ(post(store_.url("/de_de/lpress/payonline/gateway"), "order=1&key=wrong", "", nullptr).status, 404);
}

TEST_F(RestTest, WishListChangesShowInTheWishlistFeed) {
  Json::Value wish;
  wish["access_token"] = token_;
  wish["productId"] = kOtherPaidBook;
  EXPECT_EQ(rest("customer-add/wishlist", wish, token_).body, "true");
  EXPECT_EQ(rest("customer-add/wishlist", wish, token_).body, "true") << "wishing twice is no error";
  EXPECT_EQ(feedIds("wishlist").count(kOtherPaidBook), 1u);

  Json::Value unwish;
  unwish["productId"] = kOtherPaidBook;
  unwish["ids"].append(kOtherPaidBook);
  unwish["ids"].append("50");
  EXPECT_EQ(rest("customer-remove-from/wishlist", unwish, token_).body, "true");
  const auto left = feedIds("wishlist");
  EXPECT_EQ(left.count(kOtherPaidBook) + left.count("50"), 0u);
  EXPECT_EQ(left.count("51"), 1u);

  unwish["ids"].append("999999");
  unwish["ids"][0] = "51";
  EXPECT_EQ(rest("customer-remove-from/wishlist", unwish, token_).status, 404);
  EXPECT_EQ(feedIds("wishlist").count("51"), 1u) << "nothing of a refused removal happens";
}

TEST_F(RestTest, FrameRefusesBadRequestsWithClearAnswers) {
  const std::string base = store_.url("/de_de/rest/V1/");
  EXPECT_EQ(post(base + "carts/mine", "{\"broken", token_).status, 400);
  EXPECT_EQ(post(base + "carts/mine", "[1, 2]", token_).status, 400);
  EXPECT_EQ(post(base + "is-customer/exist", "{}", "").status, 400);
  EXPECT_EQ(post(base + "carts/mine", "", "").status, 401);
  EXPECT_EQ(post(base + "carts/mine", "", "expired-or-made-up").status, 401);
  EXPECT_EQ(post(store_.url("/xx_xx/rest/V1/carts/mine"), "", token_).status, 404);
  EXPECT_EQ(post(base + "no/such/endpoint", "{}", token_).status, 404);
  Json::Value status;
  status["quoteId"] = "999";
  EXPECT_EQ(rest("customer-get/order-status", status, token_).status, 404);
  for (const auto &request : store_.requests()) {
    const int code = request["status"].asInt();
    EXPECT_TRUE(code == 200 || (code >= 400 && code < 500)) << request["path"] << " " << code;
  }
}

}  // namespace
