// The host's account services against a devstore of its own: single sign-on, the device's
// record of the store account, and the notifications.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include "account_manager.h"
#include "account_test_config.h"
#include "cfg_wrapper.h"
#include "device_path.h"
#include "devstore_process.h"
#include "framework/notifier.h"
#include "single_auth.h"

using lumenpress::Notifier;
using lumenpress::testing::DevstoreProcess;
using lumenpress::utilities::AccountManager;
using lumenpress::utilities::CfgSecret;
using lumenpress::utilities::CfgWrapper;
using lumenpress::utilities::SingleAuth;

namespace {

constexpr char kBookstoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";

// The store's token pair of a customer, signed in through the REST interface.
std::pair<std::string, std::string> storeTokens(const DevstoreProcess &store, const std::string &email,
                                                const std::string &password) {
  const auto answer = store.send("POST", "/de_de/rest/V1/user-get/tokens",
                                 "{\"email\":\"" + email + "\",\"password\":\"" + password + "\"}");
  Json::Value tokens;
  Json::Reader().parse(answer.body, tokens);
  return {tokens["access_token"].asString(), tokens["refresh_token"].asString()};
}

// How many notifications an application id has, as the device shell would read them.
int notifications(int app_id) {
  sqlite3 *db = nullptr;
  sqlite3_stmt *count = nullptr;
  const std::string path = lumenpress::platform::MapDevicePath("/mnt/ext1/system/notifications.sqlite");
  int found = -1;
  if (sqlite3_open(path.c_str(), &db) == SQLITE_OK &&
      sqlite3_prepare_v2(db, "SELECT COUNT(*) FROM notifications WHERE app_id = ?", -1, &count, nullptr) == SQLITE_OK) {
    sqlite3_bind_int(count, 1, app_id);
    if (sqlite3_step(count) == SQLITE_ROW) found = sqlite3_column_int(count, 0);
  }
  sqlite3_finalize(count);
  sqlite3_close(db);
  return found;
}

class AccountServices : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store.running());
    lumenpress::testing::useAccountService(store);
  }

  DevstoreProcess store;
};

TEST_F(AccountServices, EachCustomerGetsServiceTokensOfTheirOwn) {
  const auto reader = storeTokens(store, "reader@example.com", "reader");
  const SingleAuth::TokenMap first = SingleAuth().getTokens(reader.first, reader.second);
  ASSERT_EQ(first.count("sac"), 1u);
  ASSERT_EQ(first.count("lumenpress"), 1u);
  EXPECT_EQ(first.at("lumenpress").access_token, reader.first) << "the store's own pair comes back";
  EXPECT_EQ(first.at("sac").login, "reader@example.com");
  EXPECT_FALSE(first.at("sac").refresh_token.empty());
  EXPECT_EQ(SingleAuth().getTokens(reader.first, reader.second).at("sac").access_token, first.at("sac").access_token)
      << "the same customer, the same account";

  ASSERT_EQ(
      store
          .send("POST", "/de_de/rest/V1/customers",
                R"({"customer":{"email":"ida@example.com","firstname":"Ida","lastname":"I"},"password":"secret1"})")
          .status,
      200);
  const auto ida = storeTokens(store, "ida@example.com", "secret1");
  EXPECT_NE(SingleAuth().getTokens(ida.first, ida.second).at("sac").access_token, first.at("sac").access_token);
  EXPECT_TRUE(SingleAuth().getTokens(reader.first, ida.second).empty()) << "a pair of two customers";
}

TEST_F(AccountServices, RefusedAndBrokenAnswersGiveNoTokens) {
  const auto reader = storeTokens(store, "reader@example.com", "reader");
  EXPECT_TRUE(SingleAuth().getTokens("unknown", "unknown").empty());
  Json::Value expire;
  expire["token"] = reader.first;
  store.send("POST", "/_control/tokens/expire", Json::FastWriter().write(expire));
  EXPECT_TRUE(SingleAuth().getTokens(reader.first, reader.second).empty()) << "an expired store token";

  const auto fresh = storeTokens(store, "reader@example.com", "reader");
  for (const char *fault :
       {R"({"path":"/account/tokens","status":500})",
        R"({"path":"/account/tokens","status":200,"body":"{\"sac\": [1, 2]}"})",
        R"({"path":"/account/tokens","break":true})", R"({"path":"/account/tokens","drop":true})"}) {
    Json::Value parsed;
    Json::Reader().parse(fault, parsed);
    ASSERT_TRUE(store.addFault(parsed));
    EXPECT_TRUE(SingleAuth().getTokens(fresh.first, fresh.second).empty()) << fault;
  }
  EXPECT_EQ(SingleAuth().getTokens(fresh.first, fresh.second).count("sac"), 1u) << "and afterwards all is well";
}

TEST(AccountManagerTest, SigningTheStoreAccountOutTakesOnlyItsTokens) {
  AccountManager accounts;
  EXPECT_FALSE(accounts.isLoggedIn(1));
  {
    CfgWrapper config(kBookstoreConfig, 1);
    config.write<CfgSecret>("sac_access_token", "a");
    config.write<CfgSecret>("sac_refresh_token", "r");
    config.write<std::string>("default_store", "http://store/");
    config.save();
  }
  EXPECT_TRUE(accounts.isLoggedIn(1));
  SingleAuth::Token shelf;
  shelf.access_token = "s";
  accounts.saveShelfnoteTokens(shelf);
  EXPECT_TRUE(accounts.isLoggedIn(3));
  accounts.logOut(1);
  EXPECT_FALSE(accounts.isLoggedIn(1));
  EXPECT_TRUE(accounts.isLoggedIn(3));
  const CfgWrapper config(kBookstoreConfig, 0);
  EXPECT_EQ(config.read<CfgSecret>("sac_refresh_token", ""), "");
  EXPECT_EQ(config.read<std::string>("default_store", ""), "http://store/");
}

TEST(NotifierTest, AddsAndRemovesByOwnerOrExactlyAndTwoProcessesBothAdd) {
  const pid_t child = fork();
  if (child == 0) {
    bool all = true;
    for (int i = 0; i < 20; ++i) all = Notifier::Add("child", std::to_string(i), "/app", "", 3) && all;
    _exit(all ? 0 : 1);
  }
  bool all = true;
  for (int i = 0; i < 20; ++i) all = Notifier::Add("parent", std::to_string(i), "/app", "", 6) && all;
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(all);
  EXPECT_EQ(WEXITSTATUS(status), 0) << "the other process's adds were not refused";
  EXPECT_EQ(notifications(3), 20);
  EXPECT_EQ(notifications(6), 20);

  const char *const title = "@$StoreNotificationTitle";
  EXPECT_TRUE(Notifier::Add(title, "@StoreNotification", "/coreapp/bin/kiosk-2.app", "--auth-state=0,1", 10));
  EXPECT_TRUE(Notifier::Add(title, "@StoreNotification", "/coreapp/bin/kiosk-2.app", "--auth-state=1", 10));
  EXPECT_TRUE(Notifier::Remove(title, "@StoreNotification", "/coreapp/bin/kiosk-2.app", "--auth-state=0,1", 10));
  EXPECT_EQ(notifications(10), 1) << "only the exact one goes";
  EXPECT_TRUE(Notifier::Remove(6));
  EXPECT_EQ(notifications(6), 0);
  EXPECT_EQ(notifications(3), 20);
}

}  // namespace
