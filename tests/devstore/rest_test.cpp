// devstore's REST interface as the store client sees it: accounts and tokens, carts and
// orders through to the purchased feed, payments by page, gateway and stored card, cards,
// the wish list, and the frame's refusals.
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

// From the fixed seed: a free e-book and paid ones nobody owns, a book out of stock, and
// three books of one series that gives 15 % off from three books (12.99, 2.99, 12.99 EUR).
const char kFreeBook[] = "18";
const char kPaidBook[] = "2";
const char kOtherPaidBook[] = "91";  // 6.99 EUR, in no series
const char kOutOfStock[] = "43";
const char kSeriesBooks[][2] = {"5", "6", "7"};
const char kEmail[] = "reader@example.com";
const char kValidCard[] = "4111111111111111";

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

TEST_F(RestTest, AccountChecksLoginAndNewAccounts) {
  Json::Value check;
  check["email"] = kEmail;
  EXPECT_EQ(rest("is-customer/exist", check).body, "true");
  check["email"] = "nobody@example.com";
  EXPECT_EQ(rest("is-customer/exist", check).body, "false");
  check["email"] = "no-at-sign.example.com";
  const auto malformed = rest("is-customer/exist", check);
  EXPECT_EQ(malformed.status, 200);
  EXPECT_NE(malformed.body.find("Email has a wrong format"), std::string::npos);

  const auto signedIn = parsed(login("reader").body);
  EXPECT_FALSE(signedIn["access_token"].asString().empty());
  EXPECT_FALSE(signedIn["refresh_token"].asString().empty());
  EXPECT_FALSE(signedIn["expires_in"].asString().empty());
  const auto wrong = login("wrong");
  EXPECT_EQ(wrong.status, 401);
  EXPECT_EQ(parsed(wrong.body)["code"].asInt(), 1);

  Json::Value account;
  account["customer"]["email"] = "new@example.com";
  account["customer"]["firstname"] = "Nina";
  account["customer"]["lastname"] = "Neu";
  account["password"] = "secret-1";
  EXPECT_EQ(rest("customers", account).status, 200);
  EXPECT_EQ(rest("customers", account).status, 400) << "the same e-mail twice";
  Json::Value credentials;
  credentials["email"] = "new@example.com";
  credentials["password"] = "secret-1";
  const std::string token = parsed(rest("user-get/tokens", credentials).body)["access_token"].asString();
  const auto user = parsed(store_.get("/de_de/rest/V1/customers/me/", {"Authorization: Bearer " + token}).body);
  EXPECT_EQ(user["email"].asString(), "new@example.com");
  EXPECT_EQ(user["firstname"].asString(), "Nina");
  EXPECT_GT(user["id"].asInt(), 1);

  // The newsletter consent carries its token only in the body.
  Json::Value consent;
  consent["access_token"] = token;
  consent["marketing"] = 1;
  EXPECT_EQ(rest("customer-set/subscription", consent).body, "true");
  consent["access_token"] = "unknown";
  EXPECT_EQ(rest("customer-set/subscription", consent).status, 401);
}

TEST_F(RestTest, RepeatedWrongPasswordsLockTheAccount) {
  for (int i = 0; i < 5; ++i) EXPECT_EQ(parsed(login("wrong").body)["code"].asInt(), 1);
  const auto locked = login("reader");
  EXPECT_EQ(locked.status, 401);
  EXPECT_EQ(parsed(locked.body)["code"].asInt(), 2);
}

TEST_F(RestTest, StoreListGivesEachStoreItsUrlAndLanguage) {
  Json::Value body;
  body["code"] = "en_DE";
  body["model"] = "PB740-2";
  body["language"] = "en";
  const auto stores = parsed(rest("device-integration/stores-all", body).body);
  ASSERT_TRUE(stores.isArray());
  ASSERT_EQ(stores.size(), 3u);
  EXPECT_EQ(stores[0]["url"].asString(), store_.url("/de_de/"));
  EXPECT_EQ(stores[0]["langCode"].asString(), "de");
  EXPECT_EQ(stores[0]["language"].asString(), "Deutsch");
  EXPECT_EQ(stores[1]["url"].asString(), store_.url("/en_us/"));
  for (const auto &store : stores) EXPECT_EQ(store["status"].asString(), "enable");
}

TEST_F(RestTest, ExpiredAccessTokenIsRefusedUntilRefreshed) {
  const auto pair = parsed(login("reader").body);
  const std::string access = pair["access_token"].asString();
  const std::string me = "/de_de/rest/V1/customers/me/";
  EXPECT_EQ(store_.get(me, {"Authorization: Bearer " + access}).status, 200);
  store_.send("POST", "/_control/tokens/expire", "{\"token\":\"" + access + "\"}");
  EXPECT_EQ(store_.get(me, {"Authorization: Bearer " + access}).status, 401);
  EXPECT_EQ(store_.get(me).status, 401);

  Json::Value refresh;
  refresh["access_token"] = access;
  refresh["refresh_token"] = pair["refresh_token"];
  refresh["device_id"] = "PB740-2-0001";
  const std::string fresh = unquoted(rest("customer-token/refresh", refresh));
  EXPECT_NE(fresh, access);
  EXPECT_EQ(store_.get(me, {"Authorization: Bearer " + fresh}).status, 200);
  EXPECT_EQ(store_.get(me, {"Authorization: Bearer " + access}).status, 401);

  refresh["refresh_token"] = "not-a-token";
  EXPECT_EQ(rest("customer-token/refresh", refresh).status, 401);
  refresh.removeMember("refresh_token");
  EXPECT_EQ(rest("customer-token/refresh", refresh).status, 400);
  // A refresh token that has run out ends the session.
  refresh["access_token"] = fresh;
  refresh["refresh_token"] = pair["refresh_token"];
  store_.send("POST", "/_control/tokens/expire", "{}");
  EXPECT_EQ(rest("customer-token/refresh", refresh).status, 401);
}

TEST_F(RestTest, FreeBookBoughtThroughCartAndOrderIsPurchasedAtOnce) {
  EXPECT_FALSE(owns(kFreeBook));
  Json::Value check;
  check["sku"] = kFreeBook;
  check["email"] = kEmail;
  EXPECT_TRUE(parsed(rest("carts/mine/opds-checkout-check", check, token_).body)[0]["is_salable"].asBool());
  store_.clearRequests();
  const std::string quote = cartWith({kFreeBook});
  const std::string order = unquoted(placeOrder("free"));
  Json::Value source;
  source["accessToken"] = token_;
  source["orderId"] = order;
  source["source"] = "e-ink 740-2";
  EXPECT_EQ(rest("device-integration/set-source", source, token_).body, "true");
  EXPECT_EQ(status(quote), "complete");
  for (const auto &request : store_.requests()) EXPECT_EQ(request["status"].asInt(), 200) << request["path"];

  EXPECT_TRUE(owns(kFreeBook));
  EXPECT_EQ(feedIds("purchased").count(kFreeBook), 1u);
  const auto purchases = parsed(rest("customer-get/purchases").body);
  ASSERT_EQ(purchases.size(), 5u);
  EXPECT_EQ(purchases[0]["item_id"].asString(), kFreeBook) << "the newest first";
  EXPECT_FALSE(purchases[0]["name"].asString().empty());
  EXPECT_FALSE(purchases[0]["author"].asString().empty());
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

TEST_F(RestTest, PaymentMethodsComeInBothForms) {
  const auto first = parsed(store_.get("/de_de/rest/V1/customer-get/payment-methods?number=1").body);
  const auto second = parsed(store_.get("/de_de/rest/V1/device-payment/methods?number=1").body);
  ASSERT_TRUE(first.isArray());
  ASSERT_EQ(first.size(), second.size());
  std::set<std::string> codes;
  for (Json::ArrayIndex i = 0; i < second.size(); ++i) {
    codes.insert(second[i]["method"].asString());
    EXPECT_FALSE(first[i].isMember("usePaymentInformation"));
    EXPECT_EQ(second[i]["usePaymentInformation"].asInt(), 1);
    EXPECT_EQ(second[i]["country_id"].asString(), "DE");
    EXPECT_FALSE(second[i]["title"].asString().empty());
  }
  EXPECT_EQ(codes, (std::set<std::string>{"free", "payonlinepaymentmethod", "hgwcc", "hgwsue", "paypal"}));
}

TEST_F(RestTest, StoredCardsAreListedRemovedAndRebilled) {
  const auto hgwcc = parsed(rest("device-payment/hgwcc-get-card").body);
  ASSERT_EQ(hgwcc.size(), 2u);
  EXPECT_EQ(hgwcc[0]["brand"].asString(), "MASTERCARD");
  EXPECT_EQ(hgwcc[0]["card_number"].asString(), "555555******4444");
  const auto payonline = parsed(rest("payonline/get-card").body);
  ASSERT_EQ(payonline.size(), 1u);
  EXPECT_EQ(payonline[0]["card"].asString(), "424242******4242");
  EXPECT_EQ(parsed(rest("device-payment/last/card").body)[0]["method"].asString(), "payonlinepaymentmethod");

  Json::Value remove;
  remove["card_id"] = hgwcc[0]["entity_id"];
  EXPECT_EQ(rest("device-payment/remove-card", remove, token_).body, "true");
  EXPECT_EQ(rest("device-payment/remove-card", remove, token_).status, 404);
  EXPECT_EQ(parsed(rest("device-payment/hgwcc-get-card").body).size(), 1u);
  remove.clear();
  remove["id"] = payonline[0]["id"];
  EXPECT_EQ(rest("payonline/remove-card", remove, token_).body, "true");
  EXPECT_EQ(parsed(rest("payonline/get-card").body).size(), 0u);

  // A stored card pays a cart at once, and becomes the card used last.
  const std::string quote = cartWith({kPaidBook});
  Json::Value rebill;
  rebill["quote_id"] = quote;
  rebill["card_id"] = hgwcc[1]["entity_id"];
  EXPECT_EQ(rest("device-payment/hgwcc-rebill", rebill, token_).body, "true");
  EXPECT_EQ(status(quote), "complete");
  const auto last = parsed(rest("device-payment/last/card").body);
  EXPECT_EQ(last[0]["entity_id"], hgwcc[1]["entity_id"]);
  EXPECT_EQ(last[0]["method"].asString(), "hgwcc");
}

TEST_F(RestTest, GatewayChargesTheCardFormAsTheDevicePostsIt) {
  // The device appends the card fields to the link unescaped and posts what follows the "?".
  const auto pay = [&](const std::string &number, bool remember) {
    cartWith({kPaidBook});
    const std::string order = unquoted(placeOrder("payonlinepaymentmethod"));
    Json::Value body;
    body["orderId"] = order;
    body["rebillRemember"] = remember;
    body["rebillCard"] = "";
    const std::string link = parsed(rest("payonline/get-link", body, token_).body).asString();
    const auto question = link.find('?');
    EXPECT_NE(question, std::string::npos);
    return post(link.substr(0, question),
                link.substr(question + 1) + "&CardHolderName=Cardholder Name&CardNumber=" + number +
                    "&CardExpDate=12/49&CardCvv=123&Issure= &Email=" + kEmail,
                "", nullptr);
  };
  const auto invalid = pay("4111111111111112", false);
  EXPECT_EQ(invalid.status, 200);
  EXPECT_EQ(invalid.body.rfind("Code=400", 0), 0u) << invalid.body;
  EXPECT_EQ(pay("4000000000000002", false).body.rfind("Code=402", 0), 0u);
  EXPECT_FALSE(owns(kPaidBook));

  const auto approved = pay(kValidCard, true);
  EXPECT_EQ(approved.body.rfind("Code=200&", 0), 0u) << approved.body;
  EXPECT_TRUE(owns(kPaidBook));
  const auto cards = parsed(rest("payonline/get-card").body);
  EXPECT_EQ(cards[0]["card"].asString(), "411111******1111") << "remembered, and used last";
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

TEST_F(RestTest, GroupedCountPricesASelectionWithTheSeriesDiscount) {
  Json::Value ids;
  ids["ids"].append(kSeriesBooks[0]);
  ids["ids"].append(kSeriesBooks[1]);
  EXPECT_EQ(rest("grouped-product/count", ids).body, "15.98") << "too few books for the discount";
  ids["ids"].append(kSeriesBooks[2]);
  ids["ids"].append(kOtherPaidBook);
  EXPECT_EQ(rest("grouped-product/count", ids).body, "31.61") << "15 % off the series' three only";
  EXPECT_EQ(post(store_.url("/de_de/rest/V1/grouped-product/count"), "null", "").status, 400);
  ids["ids"].append("999999");
  EXPECT_EQ(rest("grouped-product/count", ids).status, 404);
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
