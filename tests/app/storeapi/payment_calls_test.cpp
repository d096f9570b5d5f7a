// Payment methods, stored cards and the card gateway, which the client posts to directly.
#include <algorithm>
#include <fstream>

#include "device_path.h"
#include "store_api_fixture.h"

using lumenpress::bookstore::BookPurchaseInfo;
using lumenpress::testing::StoreApiTest;

namespace {

const char kGatewayPath[] = "lpress/payonline/gateway";

std::string text(const std::vector<char> &response) {
  return response.empty() ? std::string() : std::string(response.data());
}

}  // namespace

class PaymentCallsTest : public StoreApiTest {
protected:
  // A pending order of one paid book for the card gateway, and the gateway's link for it.
  std::string gatewayLink(bool rememberCard) {
    std::string quote;
    std::string cleared;
    std::string order;
    std::string link;
    EXPECT_EQ(api_->clearCart(&cleared), BookstoreApi::kNoError);
    EXPECT_EQ(api_->createQuote(&quote), BookstoreApi::kNoError);
    EXPECT_EQ(api_->addToCart(quote, {BookPurchaseInfo{"91", "91"}}), BookstoreApi::kNoError);
    BookstoreApi::PaymentMethodInfo method;
    method.method = "payonlinepaymentmethod";
    EXPECT_EQ(api_->createOrder({1, kEmail, "Rita", "Reader"}, method, &order), BookstoreApi::kNoError);
    EXPECT_EQ(api_->getPayOnlineLink(order, rememberCard, "", &link), BookstoreApi::kNoError);
    EXPECT_EQ(lastBodyTo("rest/V1/payonline/get-link"),
              json(R"({"orderId": ")" + order + R"(", "rebillRemember": )" + (rememberCard ? "true" : "false") +
                   R"(, "rebillCard": "", "access_token": ")" + api_->currentAccessToken() + "\"}"));
    return link;
  }
};

TEST_F(PaymentCallsTest, MethodListsNameTheDeviceAndReadEveryMember) {
  std::vector<BookstoreApi::PaymentMethodInfo> methods;
  ASSERT_EQ(api_->getPaymentMethods2(&methods), BookstoreApi::kNoError);
  const auto byName = [&methods](const std::string &name) {
    return std::find_if(methods.begin(), methods.end(), [&name](const auto &m) { return m.method == name; });
  };
  ASSERT_NE(byName("hgwcc"), methods.end());
  EXPECT_FALSE(byName("hgwcc")->link_rebill.empty());
  EXPECT_FALSE(byName("hgwcc")->title.empty());
  const auto listed = requestsTo("rest/V1/device-payment/methods");
  ASSERT_EQ(listed.size(), 1u);
  EXPECT_EQ(listed[0]["query"]["number"].asString().rfind("LP740", 0), 0u) << listed[0]["query"];
  EXPECT_EQ(listed[0]["body"].asString(), "");

  answer("rest/V1/device-payment/methods", 200,
         R"([{"method": "x", "usePaymentInformation": 0, "agreement_ids": "3,4"}])");
  methods.clear();
  ASSERT_EQ(api_->getPaymentMethods2(&methods), BookstoreApi::kNoError);
  EXPECT_FALSE(methods[0].usePaymentInformation);
  EXPECT_EQ(methods[0].agreement_ids, "3,4");

  // The older list leaves the newer members alone, and a 401 is just a failure here.
  methods.clear();
  ASSERT_EQ(api_->getPaymentMethods(&methods), BookstoreApi::kNoError);
  EXPECT_TRUE(std::all_of(methods.begin(), methods.end(),
                          [](const auto &m) { return m.usePaymentInformation && m.link_rebill.empty(); }));
  answer("rest/V1/customer-get/payment-methods", 401);
  EXPECT_EQ(api_->getPaymentMethods(&methods), BookstoreApi::kHttpError);
  EXPECT_EQ(errors(), (std::vector<std::pair<int, int>>{{0, 401}}));
  answer("rest/V1/customer-get/payment-methods", 200, "{}");
  EXPECT_EQ(api_->getPaymentMethods(nullptr), BookstoreApi::kFail);
  EXPECT_TRUE(requestsTo("rest/V1/customer-token/refresh").empty());
}

TEST_F(PaymentCallsTest, GatewayTakesTheCardFormUnescapedAndKeepsTheCard) {
  signIn();
  const std::string link = gatewayLink(true);
  ASSERT_NE(link.find('?'), std::string::npos) << link;

  std::vector<char> response;
  long code = 0;
  ASSERT_EQ(api_->PerformPayOnlineRequest(link, "Anna Maria", "4111111111111111", "12/30", "123", "VISA",
                                          "anna+1@example.com", &response, &code),
            BookstoreApi::kNoError);
  EXPECT_EQ(code, 200);
  EXPECT_EQ(text(response).rfind("Code=200&", 0), 0u) << text(response);
  const Json::Value posted = requestsTo(kGatewayPath).back();
  EXPECT_EQ(posted["method"].asString(), "POST");
  EXPECT_EQ(posted["target"].asString(), "/de_de/lpress/payonline/gateway");
  const std::string form = posted["body"].asString();
  EXPECT_NE(form.find("&CardHolderName=Anna Maria&CardNumber=4111111111111111&CardExpDate=12/30&CardCvv=123"
                      "&Issure=VISA&Email=anna+1@example.com"),
            std::string::npos)
      << form;

  // The seeded customer keeps one PayOnline card already.
  std::vector<BookstoreApi::Card> cards;
  ASSERT_EQ(api_->getPayonlineCards(&cards), BookstoreApi::kNoError);
  ASSERT_EQ(cards.size(), 2u);
  const auto kept = std::find_if(cards.begin(), cards.end(),
                                 [](const auto &card) { return card.number.find("1111") != std::string::npos; });
  ASSERT_NE(kept, cards.end());
  EXPECT_TRUE(kept->method.empty());
  std::vector<BookstoreApi::Card> last;
  ASSERT_EQ(api_->getLastUsedCard(last), BookstoreApi::kNoError);
  ASSERT_EQ(last.size(), 1u);
  EXPECT_EQ(last[0].id, kept->id);
  EXPECT_EQ(last[0].method, "payonlinepaymentmethod");

  EXPECT_EQ(api_->removePayOnlineCard(std::stoi(kept->id)), BookstoreApi::kNoError);
  EXPECT_EQ(lastBodyTo("rest/V1/payonline/remove-card")["id"], Json::Value(kept->id));
  std::vector<BookstoreApi::Card> left;
  ASSERT_EQ(api_->getPayonlineCards(&left), BookstoreApi::kNoError);
  ASSERT_EQ(left.size(), 1u);
  EXPECT_NE(left[0].id, kept->id);
}

TEST_F(PaymentCallsTest, GatewayPostsWithoutAQuestionMarkOrWithARedirectFail) {
  signIn();
  std::vector<char> response;
  long code = 0;
  const std::string bare = store_.url("/de_de/lpress/payonline/gateway");
  EXPECT_EQ(api_->PerformPayOnlineRequest(bare, "Anna", "4111111111111111", "12/30", "123", "VISA", "a@example.com",
                                          &response, &code),
            BookstoreApi::kHttpError);
  const Json::Value posted = store_.requests()[0];
  EXPECT_EQ(posted["path"].asString().rfind("/de_de/lpress/payonline/gateway&CardHolderName=Anna&", 0), 0u);
  EXPECT_EQ(posted["body"].asString(), "");

  response.clear();
  answer(kGatewayPath, 302, "moved");
  EXPECT_EQ(api_->PerformPayOnlineRequest(gatewayLink(false), &response, &code), BookstoreApi::kHttpError);
  EXPECT_EQ(code, 302);
  EXPECT_EQ(text(response), "moved");

  // Without a network the gateway is not tried at all.
  std::ofstream(lumenpress::platform::DeviceRoot() + "/host/network_down");
  store_.clearRequests();
  EXPECT_EQ(api_->PerformPayOnlineRequest(bare, &response, &code), BookstoreApi::kFail);
  EXPECT_TRUE(store_.requests().empty());
  EXPECT_TRUE(errors().empty());
}

TEST_F(PaymentCallsTest, StoredCardPaysTheCartAtOnce) {
  signIn();
  std::vector<BookstoreApi::Card> cards;
  ASSERT_EQ(api_->getHgwccCards(&cards), BookstoreApi::kNoError);
  ASSERT_EQ(cards.size(), 2u) << "the seeded customer keeps two";
  EXPECT_FALSE(cards[0].method.empty()) << "the brand";
  std::string quote;
  std::string cleared;
  ASSERT_EQ(api_->clearCart(&cleared), BookstoreApi::kNoError);
  ASSERT_EQ(api_->createQuote(&quote), BookstoreApi::kNoError);
  ASSERT_EQ(api_->addToCart(quote, {BookPurchaseInfo{"91", "91"}}), BookstoreApi::kNoError);

  ASSERT_EQ(api_->hgwccRebill(quote, cards[1].id), BookstoreApi::kNoError);
  EXPECT_EQ(lastBodyTo("rest/V1/device-payment/hgwcc-rebill"),
            json(R"({"quote_id": ")" + quote + R"(", "card_id": ")" + cards[1].id + R"(", "access_token": ")" +
                 api_->currentAccessToken() + "\"}"));
  std::string status;
  ASSERT_EQ(api_->getPaymentStatus("", quote, &status), BookstoreApi::kNoError);
  EXPECT_EQ(status, "complete");
  std::vector<BookstoreApi::Card> last;
  ASSERT_EQ(api_->getLastUsedCard(last), BookstoreApi::kNoError);
  ASSERT_EQ(last.size(), 1u);
  EXPECT_EQ(last[0].id, cards[1].id);
  EXPECT_EQ(last[0].method, "hgwcc");

  ASSERT_EQ(api_->removeHgwccCard(cards[1].id), BookstoreApi::kNoError);
  std::vector<BookstoreApi::Card> left;
  ASSERT_EQ(api_->getHgwccCards(&left), BookstoreApi::kNoError);
  EXPECT_EQ(left.size(), 1u);
}

TEST_F(PaymentCallsTest, CardListsInOtherShapesAreRefused) {
  signIn();
  std::vector<BookstoreApi::Card> cards;
  answer("rest/V1/payonline/get-card", 200, R"({"id": "1", "card": "XXXX"})");
  EXPECT_EQ(api_->getPayonlineCards(&cards), BookstoreApi::kFail);
  answer("rest/V1/payonline/get-card", 200, "[{");
  EXPECT_EQ(api_->getPayonlineCards(&cards), BookstoreApi::kFail);
  EXPECT_TRUE(cards.empty());

  EXPECT_EQ(api_->removeHgwccCard("999"), BookstoreApi::kHttpError);
  EXPECT_EQ(lastBodyTo("rest/V1/device-payment/remove-card")["card_id"], Json::Value("999"));
  EXPECT_EQ(errors(), (std::vector<std::pair<int, int>>{{0, 404}}));
}
