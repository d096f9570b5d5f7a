// The account's calls against the store: e-mail check, store list, new account, newsletter,
// login and the user record, with the answers each one reads as failure.
#include "cfg_wrapper.h"
#include "store_api_fixture.h"

using lumenpress::testing::StoreApiTest;
using lumenpress::utilities::CfgSecret;
using lumenpress::utilities::CfgWrapper;

namespace {

using Errors = std::vector<std::pair<int, int>>;

const char kCheckPath[] = "rest/V1/is-customer/exist";
const char kStoresPath[] = "rest/V1/device-integration/stores-all";
const char kLoginPath[] = "rest/V1/user-get/tokens";

void setDeviceLanguage(const char *language) {
  CfgWrapper global("/mnt/ext1/system/config/global.cfg", 1);
  if (language) {
    global.write<std::string>("language", language);
  } else {
    global.remove("language");
  }
  ASSERT_TRUE(global.save());
}

}  // namespace

TEST_F(StoreApiTest, EmailCheckReadsTheAnswerAsText) {
  bool exists = false;
  EXPECT_EQ(api_->checkUser(kEmail, &exists), BookstoreApi::kNoError);
  EXPECT_TRUE(exists);
  EXPECT_EQ(api_->checkUser("nobody@example.com", &exists), BookstoreApi::kNoError);
  EXPECT_FALSE(exists);
  EXPECT_EQ(api_->checkUser("no-at-sign.example.com", &exists), BookstoreApi::kWrongEmailFormat);
  EXPECT_EQ(lastBodyTo(kCheckPath)["email"].asString(), "no-at-sign.example.com");

  answer(kCheckPath, 200, "[false, true]");
  EXPECT_EQ(api_->checkUser(kEmail, &exists), BookstoreApi::kNoError);
  EXPECT_TRUE(exists);
  answer(kCheckPath, 200, "{}");
  EXPECT_EQ(api_->checkUser(kEmail, &exists), BookstoreApi::kFail);
  EXPECT_TRUE(errors().empty());

  // The format complaint counts only on a 200.
  answer(kCheckPath, 400, R"({"message": "Email has a wrong format"})");
  EXPECT_EQ(api_->checkUser("x", &exists), BookstoreApi::kFail);
  drop(kCheckPath);
  EXPECT_EQ(api_->checkUser(kEmail, &exists), BookstoreApi::kNetworkError);
  ASSERT_EQ(errors().size(), 2u);
  EXPECT_EQ(errors()[0], std::make_pair(0, 400));
  EXPECT_NE(errors()[1].first, 0);
}

TEST_F(StoreApiTest, StoreListTellsTheDeviceAndKeepsDisabledStores) {
  setDeviceLanguage("de");
  const auto stores = api_->getStores("en_DE");
  ASSERT_EQ(stores.size(), 3u);
  EXPECT_EQ(stores[0].url, store_.url("/de_de/"));
  EXPECT_EQ(stores[0].langCode, "de");
  EXPECT_EQ(stores[0].language, "Deutsch");
  EXPECT_FALSE(stores[0].disabled);
  Json::Value body = lastBodyTo(kStoresPath), time;
  EXPECT_TRUE(body.removeMember("time", &time) && !time.asString().empty());
  EXPECT_EQ(body, json(R"({"code": "en_DE", "model": "LumenPress Reader 740-2", "language": "de"})"));
  EXPECT_EQ(requestsTo(kStoresPath).back()["authorization"].asString(), "") << "nobody has signed in";

  setDeviceLanguage(nullptr);
  EXPECT_EQ(api_->getStores("en_DE").size(), 3u);
  EXPECT_EQ(lastBodyTo(kStoresPath)["language"].asString(), "en");
  answer(kStoresPath, 200, R"([{"url": "http://a/", "langCode": "en", "status": "disable"}, {"url": "http://b/"}])");
  const auto flagged = api_->getStores("en_DE");
  ASSERT_EQ(flagged.size(), 2u);
  EXPECT_TRUE(flagged[0].disabled);
  EXPECT_FALSE(flagged[1].disabled);

  answer(kStoresPath, 200, R"({"url": "http://a/"})");
  EXPECT_TRUE(api_->getStores("en_DE").empty());
  answer(kStoresPath, 503);
  EXPECT_TRUE(api_->getStores("en_DE").empty());
  EXPECT_EQ(errors(), (Errors{{0, 503}}));
}

TEST_F(StoreApiTest, NewAccountSignsInAndTakesTheNewsletter) {
  EXPECT_EQ(api_->createAccount("new@example.com", "Nina", "Neu", "secret-1"), BookstoreApi::kNoError);
  EXPECT_EQ(lastBodyTo("rest/V1/customers")["customer"]["firstname"].asString(), "Nina");
  EXPECT_EQ(api_->createAccount("new@example.com", "Nina", "Neu", "secret-1"), BookstoreApi::kHttpError);
  EXPECT_EQ(errors(), (Errors{{0, 400}}));

  ASSERT_EQ(api_->auth("new@example.com", "secret-1").code, 0);
  EXPECT_EQ(api_->setSubscription(1), BookstoreApi::kNoError);
  const auto consent = requestsTo("rest/V1/customer-set/subscription");
  EXPECT_EQ(consent.back()["authorization"].asString(), "");
  EXPECT_EQ(lastBodyTo("rest/V1/customer-set/subscription")["marketing"], Json::Value(1));
  answer("rest/V1/customer-set/subscription", 200, "1");
  EXPECT_EQ(api_->setSubscription(1), BookstoreApi::kFail);

  BookstoreApi::UserInfo user;
  ASSERT_EQ(api_->getUserInfo(&user), BookstoreApi::kNoError);
  EXPECT_EQ(user.email, "new@example.com");
  EXPECT_EQ(user.lastname, "Neu");
  EXPECT_GT(user.id, 0);
  answer("rest/V1/customers/me/", 200, "{\"id\": 3, \"email\"");
  EXPECT_EQ(api_->getUserInfo(&user), BookstoreApi::kFail);
  const std::string tooDeep = std::string(1001, '[') + std::string(1001, ']');
  answer("rest/V1/customers/me/", 200, tooDeep.c_str());
  EXPECT_EQ(api_->getUserInfo(&user), BookstoreApi::kFail);
}

TEST_F(StoreApiTest, LoginKeepsTheTokensAndAFailedOneLosesThem) {
  const BookstoreApi::LoginInfo login = api_->auth(kEmail, kPassword);
  EXPECT_EQ(login.code, 0);
  EXPECT_FALSE(login.expires_in.empty());
  EXPECT_EQ(api_->currentAccessToken(), login.access_token);
  const CfgWrapper saved("/mnt/ext1/system/config/bookstore.cfg", 0);
  EXPECT_EQ(saved.read<CfgSecret>("access_token", ""), login.access_token);
  EXPECT_EQ(saved.read<CfgSecret>("refresh_token", ""), login.refresh_token);
  EXPECT_EQ(lastBodyTo(kLoginPath)["device_id"].asString().size(), 16u);
  EXPECT_EQ(tokensChanged_, 2) << "once at construction, once for the login";

  EXPECT_EQ(api_->auth(kEmail, "mistyped").code, 1);
  EXPECT_FALSE(api_->hasAccessToken());
  const CfgWrapper emptied("/mnt/ext1/system/config/bookstore.cfg", 0);
  EXPECT_EQ(emptied.read<CfgSecret>("access_token", "none"), "");
  EXPECT_EQ(emptied.read<CfgSecret>("refresh_token", "none"), "");
  EXPECT_EQ(tokensChanged_, 3);
  EXPECT_EQ(errors(), (Errors{{0, 401}}));

  drop(kLoginPath);
  EXPECT_EQ(api_->auth(kEmail, kPassword).code, -1);
}
