// The client's tokens: what it starts with, how a 401 refreshes them once for every thread
// that meets it, and what each way a refresh can fail leaves behind.
#include <fstream>
#include <thread>

#include "cfg_wrapper.h"
#include "device_path.h"
#include "store_api_fixture.h"

using lumenpress::testing::StoreApiTest;
using lumenpress::utilities::CfgSecret;
using lumenpress::utilities::CfgWrapper;

namespace {

const char kStoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";
const char kRefreshPath[] = "rest/V1/customer-token/refresh";
const char kUserPath[] = "rest/V1/customers/me/";

std::string savedSecret(const char *key) {
  return CfgWrapper(kStoreConfig, 0).read<CfgSecret>(key, "");
}

void saveSecrets(const std::vector<std::pair<const char *, const char *>> &secrets) {
  CfgWrapper cfg(kStoreConfig, 1);
  for (const auto &secret : secrets) cfg.write<CfgSecret>(secret.first, secret.second);
  ASSERT_TRUE(cfg.save());
}

}  // namespace

TEST_F(StoreApiTest, StoreTokensCountOnlyBesideAnAccountServiceSession) {
  saveSecrets({{"access_token", "kept-access"}, {"refresh_token", "kept-refresh"}});
  makeApi();
  EXPECT_FALSE(api_->hasAccessToken());
  EXPECT_EQ(tokensChanged_, 1);

  saveSecrets({{"sac_access_token", "account-session"}});
  makeApi();
  EXPECT_TRUE(api_->hasAccessToken());
  EXPECT_EQ(api_->currentAccessToken(), "kept-access");
}

TEST_F(StoreApiTest, ExpiredTokenIsRefreshedAndTheCallRepeatedWithTheNewOne) {
  signIn();
  const std::string old = api_->currentAccessToken();
  const std::string refresh = savedSecret("refresh_token");
  expireAccessToken();

  BookstoreApi::UserInfo user;
  ASSERT_EQ(api_->getUserInfo(&user), BookstoreApi::kNoError);
  EXPECT_EQ(user.email, kEmail);
  const std::string fresh = api_->currentAccessToken();
  EXPECT_NE(fresh, old);
  EXPECT_EQ(savedSecret("access_token"), fresh);
  EXPECT_EQ(savedSecret("refresh_token"), refresh);
  EXPECT_EQ(tokensChanged_, 1);

  const auto refreshes = requestsTo(kRefreshPath);
  ASSERT_EQ(refreshes.size(), 1u);
  EXPECT_EQ(refreshes[0]["authorization"].asString(), "");
  EXPECT_EQ(lastBodyTo(kRefreshPath), json(R"({"access_token": ")" + old + R"(", "refresh_token": ")" + refresh +
                                           R"(", "device_id": ")" + GetSerialNumber() + "\"}"));
  const auto calls = requestsTo(kUserPath);
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0]["authorization"].asString(), "Bearer " + old);
  EXPECT_EQ(calls[1]["authorization"].asString(), "Bearer " + fresh);
  EXPECT_EQ(calls[1]["content_type"].asString(), "") << "the user record is asked for without a body";
}

TEST_F(StoreApiTest, SecondRefusalAfterARefreshEndsTheCall) {
  signIn();
  answer(kUserPath, 401, nullptr, 2);
  EXPECT_EQ(api_->getUserInfo(nullptr), BookstoreApi::kNotAuthorized);
  EXPECT_EQ(requestsTo(kUserPath).size(), 2u);
  EXPECT_EQ(requestsTo(kRefreshPath).size(), 1u);
}

// The calls without an Impl of their own send the same request again, old token and all,
// and a second 401 whose refresh works still fails them, with a status of 0.
TEST_F(StoreApiTest, RequestsSentAgainAfterARefreshKeepTheirOldToken) {
  signIn();
  const std::string old = api_->currentAccessToken();
  const char cards[] = "rest/V1/device-payment/hgwcc-get-card";
  answer(cards, 401, nullptr, 2);
  std::vector<BookstoreApi::Card> found;
  EXPECT_EQ(api_->getHgwccCards(&found), BookstoreApi::kHttpError);
  const auto calls = requestsTo(cards);
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[1]["authorization"].asString(), "Bearer " + old);
  EXPECT_EQ(requestsTo(kRefreshPath).size(), 2u);
  EXPECT_EQ(errors(), (std::vector<std::pair<int, int>>{{0, 0}}));
}

class ConcurrentRefreshTest : public StoreApiTest, public ::testing::WithParamInterface<int> {};

TEST_P(ConcurrentRefreshTest, ThreadsMeetingTheSame401ShareOneRefresh) {
  signIn();
  expireAccessToken();
  // A slow refresh, so that the other threads surely meet it on the wire.
  Json::Value slow;
  slow["path"] = std::string("/de_de/") + kRefreshPath;
  slow["delay_ms"] = 300;
  ASSERT_TRUE(store_.addFault(slow));

  std::vector<BookstoreApi::ApiError> results(GetParam(), BookstoreApi::kFail);
  std::vector<BookstoreApi::UserInfo> users(GetParam());
  std::vector<std::thread> threads;
  for (int i = 0; i < GetParam(); ++i) {
    threads.emplace_back([this, i, &results, &users] { results[i] = api_->getUserInfo(&users[i]); });
  }
  for (auto &thread : threads) thread.join();

  for (int i = 0; i < GetParam(); ++i) {
    EXPECT_EQ(results[i], BookstoreApi::kNoError) << "thread " << i;
    EXPECT_EQ(users[i].email, kEmail) << "thread " << i;
  }
  EXPECT_EQ(requestsTo(kRefreshPath).size(), 1u);
  EXPECT_EQ(tokensChanged_, 1);
}

INSTANTIATE_TEST_SUITE_P(Threads, ConcurrentRefreshTest, ::testing::Values(2, 8));

TEST_F(StoreApiTest, TokenReplacedMeanwhileNeedsNoRefresh) {
  signIn();
  const std::string stale = api_->currentAccessToken();
  api_->setTokens("replaced", savedSecret("refresh_token"));
  EXPECT_EQ(api_->refreshToken(stale), BookstoreApi::kNoError);
  EXPECT_TRUE(requestsTo(kRefreshPath).empty());

  api_->setTokens("access", "");
  EXPECT_EQ(api_->refreshToken("access"), BookstoreApi::kRefreshFailed);
  EXPECT_TRUE(requestsTo(kRefreshPath).empty());
}

TEST_F(StoreApiTest, RefusedRefreshEmptiesOnlyTheAccessToken) {
  signIn();
  const std::string refresh = savedSecret("refresh_token");
  answer(kRefreshPath, 401);
  EXPECT_EQ(api_->refreshToken(api_->currentAccessToken()), BookstoreApi::kNotAuthorized);
  EXPECT_FALSE(api_->hasAccessToken());
  EXPECT_EQ(savedSecret("refresh_token"), refresh);
  EXPECT_FALSE(savedSecret("access_token").empty());
  EXPECT_EQ(tokensChanged_, 1);
  EXPECT_EQ(errors(), (std::vector<std::pair<int, int>>{{0, 401}}));
  EXPECT_EQ(api_->getUserInfo(nullptr), BookstoreApi::kNotAuthorized);
  EXPECT_TRUE(requestsTo(kUserPath).empty());
}

TEST_F(StoreApiTest, FailedRefreshKeepsTheTokens) {
  signIn();
  const std::string token = api_->currentAccessToken();

  answer(kRefreshPath, 500);
  EXPECT_EQ(api_->refreshToken(token), BookstoreApi::kRefreshFailed);
  EXPECT_EQ(errors(), (std::vector<std::pair<int, int>>{{0, 500}}));

  answer(kRefreshPath, 200, "");
  EXPECT_EQ(api_->refreshToken(token), BookstoreApi::kNoError);

  drop(kRefreshPath);
  EXPECT_EQ(api_->refreshToken(token), BookstoreApi::kNetworkError);

  EXPECT_EQ(api_->currentAccessToken(), token);
  EXPECT_EQ(errors().size(), 1u) << "a transport failure of the refresh is not reported";
  EXPECT_EQ(tokensChanged_, 0);
  EXPECT_EQ(requestsTo(kRefreshPath).size(), 3u);
}

// The order's source carries the model's number: what follows the model name's last character
// that is neither a digit nor a dash, so nothing for a name that ends in a letter.
TEST(BookstoreApiModel, ModelNameEndingInALetterHasNoNumber) {
  const std::string deviceConfig = lumenpress::platform::MapDevicePath("/coreapp/config/device.cfg");
  std::ofstream(deviceConfig) << "model=LumenPress Reader 740X\n";
  lumenpress::testing::DevstoreProcess store;
  BookstoreApi api(nullptr);
  api.setBaseUrl(store.url("/de_de"));
  ASSERT_EQ(api.auth("reader@example.com", "reader").code, 0);
  api.setPaymentSource("1");
  const Json::Value requests = store.requests();
  Json::Value body;
  ASSERT_TRUE(Json::Reader().parse(requests[requests.size() - 1]["body"].asString(), body));
  EXPECT_EQ(body["source"].asString(), "e-ink ");
}
