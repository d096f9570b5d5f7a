// The calls of a purchase: cart, checks, order, source, status and a series' price, as they
// go on the wire and as their odd answers are read.
#include "store_api_fixture.h"

using lumenpress::bookstore::BookPurchaseInfo;
using lumenpress::testing::StoreApiTest;

namespace {

// From devstore's fixed seed: a book nobody owns (6.99 EUR) and three of one series.
const QString kPaidBook = "91";
const QString kSeriesBooks[] = {"5", "6", "7"};

BookstoreApi::PurchaseBooksCol books(std::initializer_list<QString> ids) {
  BookstoreApi::PurchaseBooksCol col;
  for (const QString &id : ids) col.append(BookPurchaseInfo{id, id});
  return col;
}

BookstoreApi::PaymentMethodInfo method(const std::string &name, const std::string &agreements) {
  BookstoreApi::PaymentMethodInfo info;
  info.method = name;
  info.agreement_ids = agreements;
  info.street = "Musterstraße 1";
  info.city = "Berlin";
  return info;
}

}  // namespace

TEST_F(StoreApiTest, ChecksSendListsOnlyForSeveralBooks) {
  signIn();
  bool purchased = true;
  EXPECT_EQ(api_->checkBook(books({kPaidBook}), &purchased), BookstoreApi::kNoError);
  EXPECT_FALSE(purchased);
  Json::Value body = lastBodyTo("rest/V1/customer-check/purchase");
  EXPECT_EQ(body["bookId"].asString(), "91");
  EXPECT_FALSE(body.isMember("ids"));
  EXPECT_EQ(api_->checkBook(books({kSeriesBooks[0], kSeriesBooks[1]}), &purchased), BookstoreApi::kNoError);
  body = lastBodyTo("rest/V1/customer-check/purchase");
  EXPECT_EQ(body["bookId"].asString(), "5");
  EXPECT_EQ(body["ids"].size(), 2u);
  EXPECT_EQ(body["ids"][1].asString(), "6");

  bool salable = false;
  EXPECT_EQ(api_->checkOutCheck(books({kPaidBook}), kEmail, &salable), BookstoreApi::kNoError);
  EXPECT_TRUE(salable);
  EXPECT_FALSE(lastBodyTo("rest/V1/carts/mine/opds-checkout-check").isMember("skus"));
  EXPECT_EQ(api_->checkOutCheck(books({kSeriesBooks[0], kSeriesBooks[2]}), kEmail, &salable), BookstoreApi::kNoError);
  EXPECT_EQ(lastBodyTo("rest/V1/carts/mine/opds-checkout-check")["skus"].size(), 2u);
}

TEST_F(StoreApiTest, ChecksReadOddAnswersSafely) {
  signIn();
  const char salablePath[] = "rest/V1/carts/mine/opds-checkout-check";
  bool salable = true;
  answer(salablePath, 200, "[]");
  EXPECT_EQ(api_->checkOutCheck(books({kPaidBook}), kEmail, &salable), BookstoreApi::kNoError);
  EXPECT_FALSE(salable);
  for (const char *odd : {"not json", "{\"is_salable\": true}", "[1]"}) {
    salable = false;
    answer(salablePath, 200, odd);
    const auto result = api_->checkOutCheck(books({kPaidBook}), kEmail, &salable);
    EXPECT_TRUE(result == BookstoreApi::kFail || (result == BookstoreApi::kNoError && !salable)) << odd;
  }
  answer(salablePath, 401);
  EXPECT_EQ(api_->checkOutCheck(books({kPaidBook}), kEmail, &salable), BookstoreApi::kNotAuthorized);
  EXPECT_TRUE(requestsTo("rest/V1/customer-token/refresh").empty());

  bool purchased = false;
  answer("rest/V1/customer-check/purchase", 500);
  EXPECT_EQ(api_->checkBook(books({kPaidBook}), &purchased), BookstoreApi::kHttpError);
  EXPECT_TRUE(errors().empty());
}

TEST_F(StoreApiTest, OrderCarriesItsAgreementsAndBillingAddress) {
  signIn();
  std::string cleared;
  ASSERT_EQ(api_->clearCart(&cleared), BookstoreApi::kNoError);
  EXPECT_EQ(cleared, "true");
  std::string quote = "untouched";
  answer("rest/V1/carts/mine", 200, "");
  EXPECT_EQ(api_->createQuote(&quote), BookstoreApi::kNoError);
  EXPECT_EQ(quote, "untouched");
  ASSERT_EQ(api_->createQuote(&quote), BookstoreApi::kNoError);
  EXPECT_NE(quote, "untouched");

  ASSERT_EQ(api_->addToCart(quote, books({kPaidBook})), BookstoreApi::kNoError);
  const Json::Value items = lastBodyTo("rest/V1/device-payment/mine/items");
  EXPECT_EQ(items["quote_id"].asString(), quote);
  ASSERT_EQ(items["cart_items"].size(), 1u);
  EXPECT_EQ(items["cart_items"][0]["qty"], Json::Value("1"));
  EXPECT_EQ(items["cart_items"][0]["sku"].asString(), "91");
  EXPECT_EQ(items["cart_items"][0]["quote_id"].asString(), quote);

  BookstoreApi::UserInfo user{1, kEmail, "Rita", "Reader"};
  std::string order;
  answer("rest/V1/carts/mine/payment-information", 200, "\"77\"");
  ASSERT_EQ(api_->createOrder(user, method("paypal", ""), &order), BookstoreApi::kNoError);
  EXPECT_EQ(order, "77");
  EXPECT_FALSE(lastBodyTo("rest/V1/carts/mine/payment-information")["paymentMethod"].isMember("extension_attributes"));

  ASSERT_EQ(api_->createOrder(user, method("paypal", "1,2"), &order), BookstoreApi::kNoError);
  const Json::Value placed = lastBodyTo("rest/V1/carts/mine/payment-information");
  const Json::Value agreements = placed["paymentMethod"]["extension_attributes"]["agreement_ids"];
  ASSERT_EQ(agreements.size(), 2u);
  EXPECT_EQ(agreements[0], Json::Value("1"));
  EXPECT_EQ(agreements[1], Json::Value("2"));
  const Json::Value &address = placed["billing_address"];
  EXPECT_EQ(address["email"].asString(), kEmail);
  EXPECT_EQ(address["firstname"].asString(), "Rita");
  ASSERT_TRUE(address["street"].isArray());
  EXPECT_EQ(address["street"][0].asString(), "Musterstraße 1");
  EXPECT_NE(order, "77");

  ASSERT_EQ(api_->setPaymentSource(order), BookstoreApi::kNoError);
  const Json::Value source = lastBodyTo("rest/V1/device-integration/set-source");
  EXPECT_EQ(source["source"].asString(), "e-ink 740-2");
  EXPECT_EQ(source["orderId"].asString(), order);
  EXPECT_EQ(source["accessToken"].asString(), api_->currentAccessToken());
  std::string status;
  ASSERT_EQ(api_->getPaymentStatus(order, quote, &status), BookstoreApi::kNoError);
  EXPECT_EQ(status, "pending");
  EXPECT_EQ(lastBodyTo("rest/V1/customer-get/order-status")["quoteId"].asString(), quote);
}

TEST_F(StoreApiTest, SourceAndStatusFailuresAreReportedAsTheirCallersNeed) {
  signIn();
  answer("rest/V1/device-integration/set-source", 500);
  EXPECT_EQ(api_->setPaymentSource("1"), BookstoreApi::kFail);
  EXPECT_EQ(errors(), (std::vector<std::pair<int, int>>{{0, 500}}));

  std::string status = "before";
  drop("rest/V1/customer-get/order-status");
  EXPECT_EQ(api_->getPaymentStatus("1", "1", &status), BookstoreApi::kNetworkError);
  EXPECT_EQ(status, "before");
  EXPECT_EQ(errors().size(), 1u) << "a lost status poll is not reported";
}

TEST_F(StoreApiTest, WithoutASessionNothingButTheSeriesPriceGoesOut) {
  std::string text;
  bool flag = false;
  BookstoreApi::UserInfo user;
  EXPECT_EQ(api_->createQuote(&text), BookstoreApi::kNotAuthorized);
  EXPECT_EQ(api_->clearCart(&text), BookstoreApi::kNotAuthorized);
  EXPECT_EQ(api_->checkBook(books({kPaidBook}), &flag), BookstoreApi::kNotAuthorized);
  EXPECT_EQ(api_->checkOutCheck(books({kPaidBook}), kEmail, &flag), BookstoreApi::kNotAuthorized);
  EXPECT_EQ(api_->addToCart("1", books({kPaidBook})), BookstoreApi::kNotAuthorized);
  EXPECT_EQ(api_->createOrder(user, method("free", ""), &text), BookstoreApi::kNotAuthorized);
  EXPECT_EQ(api_->setPaymentSource("1"), BookstoreApi::kNotAuthorized);
  EXPECT_EQ(api_->getPaymentStatus("1", "1", &text), BookstoreApi::kNotAuthorized);
  EXPECT_TRUE(store_.requests().empty());

  QString price;
  ASSERT_EQ(api_->getGroupedProductCount({kSeriesBooks[0], kSeriesBooks[1], kSeriesBooks[2]}, &price),
            BookstoreApi::kNoError);
  EXPECT_EQ(price, "24.62") << "15 % off three books of the series";
  const auto priced = requestsTo("rest/V1/grouped-product/count");
  ASSERT_EQ(priced.size(), 1u);
  EXPECT_EQ(priced[0]["authorization"].asString(), "");
  EXPECT_EQ(priced[0]["content_type"].asString(), "application/json");

  answer("rest/V1/grouped-product/count", 200, "\"12,99 €\"");
  EXPECT_EQ(api_->getGroupedProductCount({kSeriesBooks[0]}, &price), BookstoreApi::kNoError);
  EXPECT_EQ(price, "\"12,99 €\"") << "the answer's text, quotes and all";
  EXPECT_EQ(api_->getGroupedProductCount({}, &price), BookstoreApi::kHttpError);
  EXPECT_EQ(requestsTo("rest/V1/grouped-product/count").back()["body"].asString(), "null\n");
  answer("rest/V1/grouped-product/count", 200, "{");
  EXPECT_EQ(api_->getGroupedProductCount({kSeriesBooks[0]}, &price), BookstoreApi::kFail);
}
