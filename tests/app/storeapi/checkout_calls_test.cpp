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
  const char purchasePath[] = "rest/V1/customer-check/purchase";
  const char salablePath[] = "rest/V1/carts/mine/opds-checkout-check";
  const std::string token = R"({"access_token": ")" + api_->currentAccessToken() + "\", ";
  bool purchased = true;
  EXPECT_EQ(api_->checkBook(books({kPaidBook}), &purchased), BookstoreApi::kNoError);
  EXPECT_FALSE(purchased);
  EXPECT_EQ(lastBodyTo(purchasePath), json(token + R"("bookId": "91"})"));
  EXPECT_EQ(api_->checkBook(books({kSeriesBooks[0], kSeriesBooks[1]}), &purchased), BookstoreApi::kNoError);
  EXPECT_EQ(lastBodyTo(purchasePath), json(token + R"("bookId": "5", "ids": ["5", "6"]})"));

  bool salable = false;
  EXPECT_EQ(api_->checkOutCheck(books({kPaidBook}), kEmail, &salable), BookstoreApi::kNoError);
  EXPECT_TRUE(salable);
  EXPECT_EQ(lastBodyTo(salablePath), json(R"({"sku": "91", "email": "reader@example.com"})"));
  EXPECT_EQ(api_->checkOutCheck(books({kSeriesBooks[0], kSeriesBooks[2]}), kEmail, &salable), BookstoreApi::kNoError);
  EXPECT_EQ(lastBodyTo(salablePath)["skus"], json(R"(["5", "7"])"));
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
  EXPECT_EQ(lastBodyTo("rest/V1/device-payment/mine/items"),
            json(R"({"quote_id": ")" + quote + R"(", "cart_items": [{"qty": "1", "sku": "91", "quote_id": ")" + quote +
                 "\"}]}"));

  BookstoreApi::UserInfo user{1, kEmail, "Rita", "Reader"};
  std::string order;
  const char orderPath[] = "rest/V1/carts/mine/payment-information";
  answer(orderPath, 200, "\"77\"");
  ASSERT_EQ(api_->createOrder(user, method("paypal", ""), &order), BookstoreApi::kNoError);
  EXPECT_EQ(order, "77");
  EXPECT_FALSE(lastBodyTo(orderPath)["paymentMethod"].isMember("extension_attributes"));

  ASSERT_EQ(api_->createOrder(user, method("paypal", "1,2"), &order), BookstoreApi::kNoError);
  EXPECT_EQ(lastBodyTo(orderPath), json(R"({
      "paymentMethod": {"method": "paypal", "extension_attributes": {"agreement_ids": ["1", "2"]}},
      "billing_address": {"email": "reader@example.com", "firstname": "Rita", "lastname": "Reader",
                          "street": ["Musterstraße 1"], "city": "Berlin", "postcode": "", "telephone": "",
                          "region_id": "", "country_id": ""}})"));
  EXPECT_NE(order, "77");

  ASSERT_EQ(api_->setPaymentSource(order), BookstoreApi::kNoError);
  EXPECT_EQ(lastBodyTo("rest/V1/device-integration/set-source"),
            json(R"({"source": "e-ink 740-2", "orderId": ")" + order + R"(", "accessToken": ")" +
                 api_->currentAccessToken() + "\"}"));
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
  EXPECT_EQ(api_->getUserInfo(&user), BookstoreApi::kNotAuthorized);
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
