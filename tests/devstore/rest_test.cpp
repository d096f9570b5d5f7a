// What of devstore's REST interface the client's own tests do not reach: the login lock, the
// payment page, the gateway's refusals, checks of what cannot be sold, the signed-in feeds as
// each change shows in them, and the frame's refusals.
#include <gtest/gtest.h>
#include <httplib.h>

#include <map>
#include <optional>
#include <regex>
#include <set>

#include "devstore_process.h"
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

  // JSON unless it is a form.
  HttpAnswer post(const std::string &url, const std::string &body, const std::string &token, bool json = true) const {
    std::vector<std::string> headers;
    if (json) headers.push_back("Content-Type: application/json");
    if (!token.empty()) headers.push_back("Authorization: Bearer " + token);
    return store_.send("POST", url, body, headers);
  }

  // A call of the seeded customer unless `signedIn` is false.
  HttpAnswer rest(const std::string &path, const std::string &json = "{}", bool signedIn = true) const {
    return post(store_.url("/de_de/rest/V1/" + path), json, signedIn ? token_ : "");
  }

  // A bare JSON string without its quotes, as the client cuts it.
  static std::string unquoted(const HttpAnswer &answer) {
    EXPECT_EQ(answer.status, 200) << answer.body;
    EXPECT_GE(answer.body.size(), 2u);
    EXPECT_EQ(answer.body.front(), '"');
    EXPECT_EQ(answer.body.back(), '"');
    return answer.body.size() < 2 ? "" : answer.body.substr(1, answer.body.size() - 2);
  }

  static std::set<std::string> idsIn(const std::string &feed) {
    std::set<std::string> ids;
    static const std::regex id("<id>(\\d+)</id>");
    for (std::sregex_iterator i(feed.begin(), feed.end(), id), end; i != end; ++i) ids.insert((*i)[1]);
    return ids;
  }

  std::set<std::string> feedIds(const std::string &feed) const {
    const auto answer = store_.get(store_.opds() + feed, {"Authorization: Bearer " + token_});
    EXPECT_EQ(answer.status, 200);
    return idsIn(answer.body);
  }

  HttpAnswer addToCart(const std::string &quote, const std::string &sku) const {
    return rest("device-payment/mine/items", R"({"quote_id": ")" + quote +
                                                 R"(", "cart_items": [{"qty": "1", "quote_id": ")" + quote +
                                                 R"(", "sku": ")" + sku + "\"}]}");
  }

  // An emptied cart with this book in it; its id.
  std::string cartWith(const std::string &sku) const {
    EXPECT_EQ(rest("customer-check/cart").body, "true");
    const std::string quote = unquoted(rest("carts/mine"));
    EXPECT_EQ(addToCart(quote, sku).status, 200);
    return quote;
  }

  HttpAnswer placeOrder(const std::string &method) const {
    return rest("carts/mine/payment-information", R"({"paymentMethod": {"method": ")" + method +
                                                      R"("}, "billing_address": {"email": "reader@example.com",
                                                      "street": ["Musterstraße 1"]}})");
  }

  std::string status(const std::string &quote) const {
    return unquoted(rest("customer-get/order-status", R"({"accessToken": ")" + token_ + R"(", "quoteId": ")" + quote +
                                                          R"(", "source": "e-ink 740-2"})"));
  }

  bool owns(const std::string &book) const {
    return rest("customer-check/purchase", R"({"bookId": ")" + book + "\"}").body == "true";
  }

  void setBrowser(const char *mode) const {
    EXPECT_EQ(store_.send("POST", "/_control/payments", std::string("{\"browser\":\"") + mode + "\"}").status, 204);
  }

  HttpAnswer login(const std::string &password) const {
    return rest("user-get/tokens",
                R"({"email": "reader@example.com", "password": ")" + password + R"(", "device_id": "PB740-2-0001"})",
                false);
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
  const std::string quote = cartWith(kPaidBook);
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

  const auto paid = post(page, "decision=complete", "", false);
  EXPECT_EQ(paid.status, 303);
  EXPECT_NE(paid.body.find("/de_de/lpress/payment/done"), std::string::npos);
  EXPECT_EQ(status(quote), "complete");
  EXPECT_EQ(feedIds("purchased").count(kPaidBook), 1u);
  EXPECT_EQ(post(page, "decision=cancel", "", false).status, 303);
  EXPECT_EQ(status(quote), "complete") << "a decided order stays decided";

  // Bought once, the book cannot go into a cart again.
  EXPECT_EQ(addToCart(unquoted(rest("carts/mine")), kPaidBook).status, 400);
}

TEST_F(RestTest, PaymentPageMakesTheOrderOfACardCartAndCanCancelIt) {
  // Card payments in the browser come without an order: the page makes it.
  setBrowser("cancel");
  std::string quote = cartWith(kPaidBook);
  EXPECT_EQ(status(quote), "pending");
  EXPECT_EQ(store_.get("/de_de/lpress/payment?method=hgwcc&quote_id=" + quote).status, 303);
  EXPECT_EQ(status(quote), "cancel");
  EXPECT_FALSE(owns(kPaidBook));

  setBrowser("complete");
  quote = cartWith(kPaidBook);
  EXPECT_EQ(store_.get("/de_de/lpress/payment?method=hgwsue&quote_id=" + quote).status, 303);
  EXPECT_EQ(status(quote), "complete");
  EXPECT_TRUE(owns(kPaidBook));
  EXPECT_EQ(store_.get("/de_de/lpress/payment?method=hgwcc&quote_id=999").status, 404);
}

TEST_F(RestTest, ChecksRefuseWhatCannotBeSold) {
  const auto salable = parsed(rest("carts/mine/opds-checkout-check", R"({"sku": "43", "skus": ["43", "18"]})").body);
  ASSERT_EQ(salable.size(), 2u);
  EXPECT_FALSE(salable[0]["is_salable"].asBool());
  EXPECT_TRUE(salable[1]["is_salable"].asBool());
  EXPECT_EQ(rest("carts/mine/opds-checkout-check", R"({"sku": "999999"})").status, 404);

  EXPECT_EQ(addToCart(unquoted(rest("carts/mine")), kOutOfStock).status, 400);
  EXPECT_EQ(addToCart("999", kFreeBook).status, 404) << "another's cart";
  EXPECT_EQ(placeOrder("free").status, 400) << "an empty cart";
  cartWith(kFreeBook);
  EXPECT_EQ(placeOrder("bitcoin").status, 400);
}

// Approved cards, the form's unescaped fields and kept cards are tested through the client;
// here the gateway's refusals.
TEST_F(RestTest, GatewayRefusesCardsThatDoNotCheckOutOrAreDeclined) {
  const auto pay = [&](const std::string &number) {
    cartWith(kPaidBook);
    const std::string order = unquoted(placeOrder("payonlinepaymentmethod"));
    const std::string link = parsed(rest("payonline/get-link", R"({"orderId": ")" + order +
                                                                   R"(", "rebillRemember": false, "rebillCard": ""})")
                                        .body)
                                 .asString();
    const auto question = link.find('?');
    EXPECT_NE(question, std::string::npos);
    return post(link.substr(0, question),
                link.substr(question + 1) + "&CardHolderName=Cardholder Name&CardNumber=" + number +
                    "&CardExpDate=12/49&CardCvv=123&Issure= &Email=" + kEmail,
                "", false);
  };
  const auto invalid = pay("4111111111111112");
  EXPECT_EQ(invalid.status, 200);
  EXPECT_EQ(invalid.body.rfind("Code=400", 0), 0u) << invalid.body;
  EXPECT_EQ(pay("4000000000000002").body.rfind("Code=402", 0), 0u);
  EXPECT_FALSE(owns(kPaidBook));
  EXPECT_EQ(post(store_.url("/de_de/lpress/payonline/gateway"), "order=1&key=wrong", "", false).status, 404);
}

// A client that revalidates its copy of a signed-in feed sees each change of the customer's
// wishes and books at once, and an unchanged feed as unchanged.
TEST_F(RestTest, SignedInFeedsAreExactAfterEveryChange) {
  httplib::Client client("127.0.0.1", store_.port());
  std::map<std::string, std::string> tags;
  // The feed's book ids when it changed since it was last asked for; nothing on a 304.
  const auto changed = [&](const std::string &feed) -> std::optional<std::set<std::string>> {
    httplib::Headers headers = {{"Authorization", "Bearer " + token_}};
    if (tags.count(feed)) headers.emplace("If-None-Match", tags[feed]);
    const auto answer = client.Get(("/de_de/lpress/opds/" + feed).c_str(), headers);
    EXPECT_TRUE(answer && (answer->status == 200 || answer->status == 304)) << feed;
    if (!answer || answer->status != 200) return std::nullopt;
    tags[feed] = answer->get_header_value("ETag");
    return idsIn(answer->body);
  };
  ASSERT_TRUE(changed("wishlist"));
  ASSERT_TRUE(changed("purchased"));
  EXPECT_FALSE(changed("wishlist"));

  const std::string wish = R"({"access_token": ")" + token_ + R"(", "productId": "91"})";
  EXPECT_EQ(rest("customer-add/wishlist", wish).body, "true");
  EXPECT_EQ(rest("customer-add/wishlist", wish).body, "true") << "wishing twice is no error";
  auto wishes = changed("wishlist");
  ASSERT_TRUE(wishes);
  EXPECT_EQ(wishes->count(kOtherPaidBook), 1u);
  EXPECT_FALSE(changed("purchased"));

  EXPECT_EQ(rest("customer-remove-from/wishlist", R"({"productId": "91", "ids": ["91", "50"]})").body, "true");
  wishes = changed("wishlist");
  ASSERT_TRUE(wishes);
  EXPECT_EQ(wishes->count(kOtherPaidBook) + wishes->count("50"), 0u);
  EXPECT_EQ(wishes->count("51"), 1u);
  EXPECT_EQ(rest("customer-remove-from/wishlist", R"({"productId": "91", "ids": ["51", "50", "999999"]})").status, 404);
  EXPECT_FALSE(changed("wishlist")) << "nothing of a refused removal happens";

  cartWith(kFreeBook);
  EXPECT_EQ(placeOrder("free").status, 200);
  const auto owned = changed("purchased");
  ASSERT_TRUE(owned);
  EXPECT_EQ(owned->count(kFreeBook), 1u);
}

TEST_F(RestTest, FrameRefusesBadRequestsWithClearAnswers) {
  EXPECT_EQ(rest("carts/mine", "{\"broken").status, 400);
  EXPECT_EQ(rest("carts/mine", "[1, 2]").status, 400);
  EXPECT_EQ(rest("is-customer/exist", "{}", false).status, 400);
  EXPECT_EQ(rest("carts/mine", "", false).status, 401);
  EXPECT_EQ(post(store_.url("/de_de/rest/V1/carts/mine"), "", "expired-or-made-up").status, 401);
  EXPECT_EQ(post(store_.url("/xx_xx/rest/V1/carts/mine"), "", token_).status, 404);
  EXPECT_EQ(rest("no/such/endpoint").status, 404);
  EXPECT_EQ(rest("customer-get/order-status", R"({"quoteId": "999"})").status, 404);
  for (const auto &request : store_.requests()) {
    const int code = request["status"].asInt();
    EXPECT_TRUE(code == 200 || (code >= 400 && code < 500)) << request["path"] << " " << code;
  }
}

}  // namespace
