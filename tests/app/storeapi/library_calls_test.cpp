// Purchases, the wish list and search suggestions.
#include "store_api_fixture.h"

using lumenpress::bookstore::BookPurchaseInfo;
using lumenpress::testing::StoreApiTest;

namespace {

const char kPurchasesPath[] = "rest/V1/customer-get/purchases";
const char kWishPath[] = "rest/V1/customer-add/wishlist";
const char kUnwishPath[] = "rest/V1/customer-remove-from/wishlist";
const char kSuggestPath[] = "lpress/opds/suggest/";

}  // namespace

TEST_F(StoreApiTest, PurchasesAppendToWhatTheCallerHas) {
  signIn();
  std::vector<BookstoreApi::BookItem> books{{"earlier", "", ""}};
  ASSERT_EQ(api_->getPurchased(&books), BookstoreApi::kNoError);
  ASSERT_EQ(books.size(), 5u) << "the seeded customer owns four books";
  EXPECT_EQ(books[0].item_id, "earlier");
  EXPECT_FALSE(books[1].name.empty());
  EXPECT_FALSE(books[1].author.empty());

  answer(kPurchasesPath, 200, "[]");
  EXPECT_EQ(api_->getPurchased(&books), BookstoreApi::kNoError);
  EXPECT_EQ(books.size(), 5u);
  answer(kPurchasesPath, 200, R"({"item_id": "1"})");
  EXPECT_EQ(api_->getPurchased(&books), BookstoreApi::kFail);
  EXPECT_EQ(books.size(), 5u);
}

// The first wish meets an expired token: it is sent once more, with the fresh token in its body.
TEST_F(StoreApiTest, WishListTakesAndGivesBackBooks) {
  signIn();
  const std::string old = api_->currentAccessToken();
  expireAccessToken();
  bool done = false;
  ASSERT_EQ(api_->addToWishList("91", &done), BookstoreApi::kNoError);
  EXPECT_TRUE(done);
  const std::string fresh = api_->currentAccessToken();
  EXPECT_NE(fresh, old);
  const auto sent = requestsTo(kWishPath);
  ASSERT_EQ(sent.size(), 2u);
  EXPECT_EQ(json(sent[0]["body"].asString()), json(R"({"access_token": ")" + old + R"(", "productId": "91"})"));
  EXPECT_EQ(json(sent[1]["body"].asString()), json(R"({"access_token": ")" + fresh + R"(", "productId": "91"})"));
  answer(kWishPath, 200, "false");
  EXPECT_EQ(api_->addToWishList("91", &done), BookstoreApi::kNoError);
  EXPECT_FALSE(done);

  auto one = std::make_shared<BookstoreApi::PurchaseBooksCol>();
  one->append(BookPurchaseInfo{"91", "91"});
  ASSERT_EQ(api_->removeFromWishList(one, &done), BookstoreApi::kNoError);
  EXPECT_TRUE(done);
  EXPECT_EQ(lastBodyTo(kUnwishPath), json(R"({"access_token": ")" + fresh + R"(", "productId": "91", "ids": ["91"]})"));

  // A book the store does not know: it refuses, and nobody else is told.
  one->append(BookPurchaseInfo{"999999", "999999"});
  ASSERT_EQ(api_->removeFromWishList(one, &done), BookstoreApi::kHttpError);
  EXPECT_TRUE(errors().empty());
}

TEST_F(StoreApiTest, SuggestionsKeepTermsAndProductsInOrder) {
  std::string term = "Sil";
  std::vector<BookstoreApi::SearchSuggestionInfo> found;
  ASSERT_EQ(api_->getSearchSuggestion(term, &found), BookstoreApi::kNoError);
  EXPECT_FALSE(found.empty()) << "what devstore offers is checked by its own tests";
  const auto asked = requestsTo(kSuggestPath);
  ASSERT_EQ(asked.size(), 1u);
  EXPECT_EQ(asked[0]["method"].asString(), "POST");
  EXPECT_EQ(asked[0]["query"]["q"].asString(), "Sil");
  EXPECT_EQ(asked[0]["body"].asString(), "");

  found.clear();
  answer(kSuggestPath, 200,
         R"([{"type": "author", "title": "a"}, {"type": "product", "title": "b", "urlOpds": "u"},
             {"type": "term", "title": "c"}, 7])");
  ASSERT_EQ(api_->getSearchSuggestion(term, &found), BookstoreApi::kNoError);
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0].title, "b");
  EXPECT_EQ(found[0].urlOpds, "u");
  EXPECT_EQ(found[1].title, "c");

  found.clear();
  answer(kSuggestPath, 200, R"({"first": {"type": "term", "title": "d"}, "second": "x"})");
  ASSERT_EQ(api_->getSearchSuggestion(term, &found), BookstoreApi::kNoError);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].title, "d");

  signIn();
  answer(kSuggestPath, 401);
  EXPECT_EQ(api_->getSearchSuggestion(term, &found), BookstoreApi::kHttpError);
  EXPECT_EQ(requestsTo(kSuggestPath).back()["authorization"].asString(), "");
  EXPECT_TRUE(requestsTo("rest/V1/customer-token/refresh").empty());
  answer(kSuggestPath, 200, "[");
  EXPECT_EQ(api_->getSearchSuggestion(term, &found), BookstoreApi::kFail);
  EXPECT_TRUE(errors().empty());
}
