// Any bytes as the store's answer to every call of the store client that reads one. The HTTP runner is replaced
// here, at link time: this program defines its two functions, so the linker takes no transport from the platform
// library, and every request gets the input as its answer.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bookstore_api.h"
#include "fuzz_device.h"
#include "http_request_runner.h"

namespace {

struct Answer {
  long status = 200;
  std::vector<char> body;
};

Answer answer;

void EveryCall(BookstoreApi &api) {
  using lumenpress::bookstore::BookPurchaseInfo;
  const BookstoreApi::PurchaseBooksCol books{BookPurchaseInfo{"1", "sku-1"}, BookPurchaseInfo{"2", "sku-2"}};
  bool flag = false;
  std::string text;
  QString price;
  std::vector<BookstoreApi::PaymentMethodInfo> methods;
  std::vector<BookstoreApi::Card> cards;
  std::vector<BookstoreApi::BookItem> purchased;
  std::vector<BookstoreApi::SearchSuggestionInfo> suggestions;
  BookstoreApi::UserInfo user;

  api.setTokens("access", "refresh");
  api.checkUser("reader@example.com", &flag);
  api.getStores("de");
  api.setSubscription(1);
  api.getUserInfo(&user);
  api.createQuote(&text);
  api.clearCart(&text);
  api.checkBook(books, &flag);
  api.checkOutCheck(books, "reader@example.com", &flag);
  api.createOrder(user, BookstoreApi::PaymentMethodInfo(), &text);
  api.getPaymentStatus("1", "1", &text);
  api.getGroupedProductCount({"1", "2"}, &price);
  api.getPaymentMethods(&methods);
  api.getPaymentMethods2(&methods);
  api.getLastUsedCard(cards);
  api.getHgwccCards(&cards);
  api.getPayonlineCards(&cards);
  api.getPayOnlineLink("1", true, "card", &text);
  api.getPurchased(&purchased);
  api.addToWishList("1", &flag);
  api.removeFromWishList(std::make_shared<BookstoreApi::PurchaseBooksCol>(books), &flag);
  text = "term";
  api.getSearchSuggestion(text, &suggestions);
  api.refreshToken(api.currentAccessToken());
  api.auth("reader@example.com", "reader");
}

}  // namespace

namespace lumenpress::utilities {

HttpRequestRunner::HttpRequestRunner() = default;

int HttpRequestRunner::PerformRequest(const HttpRequest &, long *httpCode, std::vector<char> *response, int) {
  if (httpCode) *httpCode = answer.status;
  if (response) *response = answer.body;
  return 0;
}

}  // namespace lumenpress::utilities

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  lumenpress::testing::FuzzDevice::Prepare();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static BookstoreApi api([] {});
  answer.body.assign(data, data + size);
  answer.body.push_back('\0');
  // A refused login reads the store's own code from its answer.
  for (const long status : {200L, 400L}) {
    answer.status = status;
    EveryCall(api);
  }
  return 0;
}
