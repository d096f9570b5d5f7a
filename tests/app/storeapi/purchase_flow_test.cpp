// A whole visit to the store through the client: sign in, look around, wish, buy a free book
// and a paid one, and find both among the purchases.
#include <algorithm>

#include "store_api_fixture.h"

using lumenpress::bookstore::BookPurchaseInfo;
using lumenpress::testing::StoreApiTest;

namespace {

const char kFreeBook[] = "18";
const char kPaidBook[] = "91";

}  // namespace

class PurchaseFlowTest : public StoreApiTest {
protected:
  // The calls of one purchase in the order the session makes them; the cart's quote id.
  std::string orderBook(const char *id, const std::string &methodName, std::string *order) {
    const BookstoreApi::PurchaseBooksCol book{BookPurchaseInfo{id, id}};
    std::string cleared;
    std::string quote;
    bool owned = true;
    bool salable = false;
    EXPECT_EQ(api_->clearCart(&cleared), BookstoreApi::kNoError);
    EXPECT_EQ(api_->createQuote(&quote), BookstoreApi::kNoError);
    EXPECT_EQ(api_->checkBook(book, &owned), BookstoreApi::kNoError);
    EXPECT_FALSE(owned) << id;
    EXPECT_EQ(api_->checkOutCheck(book, user_.email, &salable), BookstoreApi::kNoError);
    EXPECT_TRUE(salable) << id;
    EXPECT_EQ(api_->addToCart(quote, book), BookstoreApi::kNoError);
    const auto method =
        std::find_if(methods_.begin(), methods_.end(), [&methodName](const auto &m) { return m.method == methodName; });
    EXPECT_NE(method, methods_.end()) << methodName;
    EXPECT_EQ(api_->createOrder(user_, *method, order), BookstoreApi::kNoError);
    EXPECT_EQ(api_->setPaymentSource(*order), BookstoreApi::kNoError);
    return quote;
  }

  std::string status(const std::string &order, const std::string &quote) {
    std::string text;
    EXPECT_EQ(api_->getPaymentStatus(order, quote, &text), BookstoreApi::kNoError);
    return text;
  }

  BookstoreApi::UserInfo user_;
  std::vector<BookstoreApi::PaymentMethodInfo> methods_;
};

TEST_F(PurchaseFlowTest, FreeAndPaidBooksEndAmongThePurchases) {
  ASSERT_EQ(api_->auth(kEmail, kPassword).code, 0);
  const auto stores = api_->getStores("de_DE");
  ASSERT_EQ(stores.size(), 3u);
  api_->setBaseUrl(stores[0].url);
  ASSERT_EQ(api_->getUserInfo(&user_), BookstoreApi::kNoError);
  EXPECT_EQ(user_.firstname, "Rita");
  bool wished = false;
  ASSERT_EQ(api_->addToWishList(kPaidBook, &wished), BookstoreApi::kNoError);
  EXPECT_TRUE(wished);
  ASSERT_EQ(api_->getPaymentMethods2(&methods_), BookstoreApi::kNoError);

  std::string freeOrder;
  const std::string freeQuote = orderBook(kFreeBook, "free", &freeOrder);
  EXPECT_EQ(status(freeOrder, freeQuote), "complete");

  std::string paidOrder;
  const std::string paidQuote = orderBook(kPaidBook, "payonlinepaymentmethod", &paidOrder);
  EXPECT_EQ(status(paidOrder, paidQuote), "pending");
  std::string link;
  ASSERT_EQ(api_->getPayOnlineLink(paidOrder, false, "", &link), BookstoreApi::kNoError);
  std::vector<char> page;
  long code = 0;
  ASSERT_EQ(api_->PerformPayOnlineRequest(link, "Rita Reader", "4111111111111111", "12/30", "123", "VISA", kEmail,
                                          &page, &code),
            BookstoreApi::kNoError);
  EXPECT_EQ(status(paidOrder, paidQuote), "complete");

  std::vector<BookstoreApi::BookItem> purchased;
  ASSERT_EQ(api_->getPurchased(&purchased), BookstoreApi::kNoError);
  for (const char *id : {kFreeBook, kPaidBook}) {
    EXPECT_TRUE(std::any_of(purchased.begin(), purchased.end(), [id](const auto &b) { return b.item_id == id; })) << id;
  }
  EXPECT_TRUE(errors().empty());
}
