// The store and the catalogue's language as the program chooses, keeps and follows them, against
// a devstore of its own.
#include <gtest/gtest.h>

#include <QSignalSpy>

#include "account_test_config.h"
#include "cfg_wrapper.h"
#include "event_wait.h"
#include "language_model.h"
#include "opds_list_data_model.h"
#include "store_window.h"
#include "stores_model.h"
#include "user_data.h"
#include "user_menu_model.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::StoreWindow;
using lumenpress::testing::waitUntil;
using lumenpress::utilities::CfgWrapper;

namespace {

constexpr char kBookstoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";

std::string stored(const char *key) {
  return CfgWrapper(kBookstoreConfig, 0).read<std::string>(key, "<none>");
}

class StoreChoice : public ::testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(store.running()); }

  void start() {
    window = std::make_unique<StoreWindow>(store);
    ASSERT_TRUE(window->started());
    stores = qobject_cast<StoresModel *>(window->published("StoresModel"));
    languages = qobject_cast<LanguageModel *>(window->published("LanguageModel"));
    home = qobject_cast<OpdsListDataModel *>(window->published("RootListModel"));
    menu = qobject_cast<UserMenuModel *>(window->published("UserMenu"));
  }

  // The row of the language with that title, once the languages came.
  int language(const QString &title) {
    if (!waitUntil([&] { return languages->rowCount() > 0; })) return -1;
    for (int row = 0; row < languages->rowCount(); ++row) {
      if (languages->getElementText(row) == title) return row;
    }
    return -1;
  }

  // A store list of the test's own making, answered to the program's first request for it.
  void storeList(const Json::Value &list) {
    Json::Value fault;
    fault["path"] = "/de_de/rest/V1/device-integration/stores-all";
    fault["status"] = 200;
    fault["body"] = Json::FastWriter().write(list);
    ASSERT_TRUE(store.addFault(fault));
  }

  static Json::Value storeInfo(const std::string &url, const char *language, const char *code, bool enabled) {
    Json::Value info;
    info["url"] = url;
    info["language"] = language;
    info["langCode"] = code;
    info["status"] = enabled ? "enable" : "disable";
    return info;
  }

  DevstoreProcess store;
  std::unique_ptr<StoreWindow> window;
  StoresModel *stores = nullptr;
  LanguageModel *languages = nullptr;
  OpdsListDataModel *home = nullptr;
  UserMenuModel *menu = nullptr;
};

TEST_F(StoreChoice, TheKeptLanguageReachesTheFirstHomeFeedAndAChoiceIsKept) {
  {
    CfgWrapper config(kBookstoreConfig, 1);
    config.write<std::string>("default_content", "?content=deu");
    config.save();
  }
  start();
  bool asked = false;
  ASSERT_TRUE(waitUntil([&] {
    for (const Json::Value &request : store.requests()) {
      if (request["path"].asString() == "/de_de/lpress/opds/home") {
        asked = request["target"].asString() == "/de_de/lpress/opds/home?content=deu";
        return true;
      }
    }
    return false;
  }));
  EXPECT_TRUE(asked) << "the first home feed is asked for in the kept language";

  const int all = language("Alle Sprachen");
  ASSERT_GE(all, 0);
  languages->setModelToIndex(all);
  EXPECT_EQ(languages->content(), "") << "a language link without a content query clears it";
  EXPECT_EQ(home->getUrl().toStdString(), store.opds() + "home");
  EXPECT_EQ(stored("default_content"), "");

  const int english = language("English");
  ASSERT_GE(english, 0);
  languages->setModelToIndex(english);
  EXPECT_EQ(home->getUrl().toStdString(), store.opds() + "home?content=eng");
  EXPECT_EQ(stored("default_content"), "?content=eng");
  EXPECT_EQ(stored("default_store"), store.opds()) << "kept as the catalogue's base";
}

TEST_F(StoreChoice, ChoosingAStoreRepointsTheModelsAndIsKept) {
  start();
  ASSERT_TRUE(waitUntil([&] { return stores->rowCount() == 3; }));
  EXPECT_FALSE(menu->data(menu->index(0), UserMenuModel::DisabledRole).toBool()) << "the store row, once stores came";
  stores->setModelToIndex(1);
  EXPECT_EQ(home->getUrl().toStdString(), store.opds("en_us") + "home");
  EXPECT_EQ(stored("default_store"), store.url("/en_us/"));
  EXPECT_EQ(stored("default_store_lang_code"), "en");
  ASSERT_TRUE(waitUntil([&] { return languages->rowCount() > 0; })) << "the new store's languages";
}

TEST_F(StoreChoice, AFailedStoreListLeavesTheStoreAndHidesTheChoice) {
  Json::Value fault;
  fault["path"] = "/de_de/rest/V1/device-integration/stores-all";
  fault["status"] = 500;
  ASSERT_TRUE(store.addFault(fault));
  start();
  QSignalSpy loaded(stores, &StoresModel::storesLoaded);
  ASSERT_TRUE(waitUntil([&] { return loaded.count() > 0; }));
  EXPECT_FALSE(loaded[0][0].toBool());
  EXPECT_EQ(stores->currentUrl(), store.url("/de_de/"));
  EXPECT_TRUE(menu->data(menu->index(0), UserMenuModel::DisabledRole).toBool());

  emit UserData::instance()->forceLogOut();
  EXPECT_EQ(stored("default_store"), "<none>") << "no first store to fall back to";
}

// de_de and uk_ua on one host, en_us on another name of it.
TEST_F(StoreChoice, AStoreOnAnotherHostSignsOutAndADisabledOneIsNotKept) {
  Json::Value list(Json::arrayValue);
  list.append(storeInfo(store.url("/de_de/"), "Deutsch", "de", true));
  list.append(storeInfo("http://localhost:" + std::to_string(store.port()) + "/en_us/", "English", "en", true));
  list.append(storeInfo(store.url("/uk_ua/"), "Українська", "uk", false));
  storeList(list);
  lumenpress::testing::useAccountService(store);
  start();
  ASSERT_TRUE(waitUntil([&] { return stores->rowCount() == 3; }));
  UserData *user = UserData::instance();
  QSignalSpy finished(user, &UserData::loginFinished);
  user->login("reader@example.com", "reader");
  ASSERT_TRUE(waitUntil([&] { return finished.count() > 0; }));
  ASSERT_TRUE(user->isLoggedIn());

  EXPECT_FALSE(stores->isNeedAutoLogout(2));
  stores->setModelToIndex(2);
  EXPECT_TRUE(user->isLoggedIn()) << "same host";
  EXPECT_EQ(stores->isDisabled(), 1);
  EXPECT_EQ(stored("default_store"), store.url("/de_de/")) << "a disabled store is not kept";
  EXPECT_EQ(stored("default_store_lang_code"), "de");

  EXPECT_TRUE(stores->isNeedAutoLogout(1));
  stores->setModelToIndex(1);
  EXPECT_FALSE(user->isLoggedIn());
  EXPECT_EQ(stored("default_store"), "http://localhost:" + std::to_string(store.port()) + "/en_us/");
}

}  // namespace
