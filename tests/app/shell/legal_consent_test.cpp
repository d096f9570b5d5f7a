// The consent check at start and the consent a sign-in reports, with the store running
// offscreen against a storefront of its own.
#include <gtest/gtest.h>

#include <json/json.h>
#include <sqlite3.h>
#include <QCoreApplication>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "account_test_config.h"
#include "device_path.h"
#include "event_wait.h"
#include "legal_consent_check.h"
#include "legal_data.h"
#include "panelkit.h"
#include "quick_items.h"
#include "store_window.h"
#include "user_data.h"

using lumenpress::legal::LegalAgreement;
using lumenpress::legal::LegalData;
using lumenpress::platform::DeviceRoot;
using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::StoreWindow;
using lumenpress::testing::waitUntil;

namespace {

class LegalConsent : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store.running());
    lumenpress::testing::useAccountService(store);
    lumenpress::testing::useLegalService(store);
  }

  // The dialog's answers so far, from the task journal, each with the services it was asked for.
  static std::vector<std::string> answers() {
    std::vector<std::string> found;
    std::ifstream journal(DeviceRoot() + "/host/task_journal.jsonl");
    std::string line;
    Json::Value entry;
    Json::Reader reader;
    while (std::getline(journal, line)) {
      if (!reader.parse(line, entry) || entry["call"] != "LegalChecker") continue;
      std::string services;
      for (const Json::Value &service : entry["services"]) services += " " + service.asString();
      found.push_back(entry["answer"].asString() + services);
    }
    return found;
  }

  // How the event loop ends within `ms`; 7 when nothing ended it.
  static int runEventLoop(int ms) {
    QTimer::singleShot(ms, [] { QCoreApplication::exit(7); });
    return QCoreApplication::exec();
  }

  // The loop ended with covers still on their way: they are let arrive, and the screen stay still
  // a moment, before the window goes, so that nothing is left behind in Qt's image reader.
  static bool coversSettled(const StoreWindow &window) {
    constexpr int kLoading = 2;
    for (QQuickItem *cover : lumenpress::testing::findItems(window.window()->contentItem(), "cover")) {
      if (cover->property("status").toInt() == kLoading) return false;
    }
    return true;
  }
  static void letSettle(const StoreWindow &window) {
    int quiet_rounds = 0;
    waitUntil([&] {
      quiet_rounds = coversSettled(window) ? quiet_rounds + 1 : 0;
      return quiet_rounds > 100;
    });
  }

  // The device's own tags, as the device shell reads them.
  static std::vector<std::string> deviceTags() {
    std::vector<std::string> tags;
    sqlite3 *db = nullptr;
    sqlite3_stmt *rows = nullptr;
    const std::string path = lumenpress::platform::MapDevicePath("/mnt/ext1/system/tags.sqlite");
    if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK &&
        sqlite3_prepare_v2(db, "SELECT tag FROM tags WHERE mode = 1", -1, &rows, nullptr) == SQLITE_OK) {
      while (sqlite3_step(rows) == SQLITE_ROW)
        tags.emplace_back(reinterpret_cast<const char *>(sqlite3_column_text(rows, 0)));
    }
    sqlite3_finalize(rows);
    sqlite3_close(db);
    return tags;
  }

  bool reported(const std::string &path) const {
    for (const Json::Value &request : store.requests()) {
      if (request["path"].asString() == path && request["status"].asInt() == 200) return true;
    }
    return false;
  }

  DevstoreProcess store;
};

TEST_F(LegalConsent, ARefusalEndsTheStoreWhileItsHomePageIsUp) {
  setenv("LUMENPRESS_LEGAL_ANSWER", "refuse", 1);
  // The owner reads until the home page is up, and then refuses.
  const std::string reading = DeviceRoot() + "/host/legal_wait";
  std::ofstream(reading).put('\n');
  StoreWindow window(store);
  ASSERT_TRUE(window.started());
  // The refusal arrives through the event loop, so the loop runs from the start.
  bool home_up = false;
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, [&] {
    home_up = home_up || !window.shown("rowTitle").isEmpty();
    if (home_up) std::remove(reading.c_str());
  });
  look.start(50);
  EXPECT_EQ(runEventLoop(30000), -1);
  EXPECT_TRUE(home_up) << "the store was in use meanwhile";
  EXPECT_EQ(answers(), std::vector<std::string>{"refuse 0"});
  letSettle(window);
  unsetenv("LUMENPRESS_LEGAL_ANSWER");
}

TEST_F(LegalConsent, AcceptedAtStartAndReportedWithTheSignIn) {
  StoreWindow window(store);
  ASSERT_TRUE(window.started());
  ASSERT_TRUE(waitUntil([] { return !answers().empty(); }));
  EXPECT_EQ(answers(), std::vector<std::string>{"accept 0"});
  EXPECT_EQ(runEventLoop(1500), 7) << "the store goes on";
  EXPECT_TRUE(reported("/legal/v1/list/e-ink/en")) << "the documents that apply were fetched";
  EXPECT_FALSE(reported("/legal/v1/process/EULA/en")) << "nothing is reported before a sign-in";
  EXPECT_TRUE(deviceTags().empty()) << "the device's own documents wait for no account";

  UserData &user = *UserData::instance();
  ASSERT_TRUE(user.preagreedLegalDocumentsForBookstore());
  EXPECT_EQ(deviceTags(), std::vector<std::string>{"legal_pending:bookstore"});
  user.login("reader@example.com", "reader");
  ASSERT_TRUE(waitUntil([&] { return user.isLoggedIn() && reported("/legal/v1/process/TERMSOFUSE/en"); }));
  EXPECT_TRUE(reported("/legal/v1/process/EULA/en")) << "the device's own consent goes with it";
  LegalAgreement agreement;
  ASSERT_EQ(LegalData().getAgreement("bookstore|TERMSOFUSE", "1.1", agreement), LegalData::kOk);
  EXPECT_EQ(agreement.status, LegalAgreement::kAgreed);
  EXPECT_TRUE(agreement.sent_to_server);
  EXPECT_TRUE(deviceTags().empty()) << "the store's consent went with the account";
  user.logout();
  letSettle(window);
}

TEST_F(LegalConsent, ASignedInOwnerIsAskedForTheStoresAndTheCloudsDocuments) {
  UserData &user = *UserData::instance();
  user.setApiBaseUrl(store.url("/de_de/"));
  QSignalSpy finished(&user, &UserData::loginFinished);
  user.login("reader@example.com", "reader");
  ASSERT_TRUE(waitUntil([&] { return !finished.isEmpty(); }));
  ASSERT_TRUE(finished.front().front().toBool());
  EXPECT_TRUE(LegalConsentCheck::run(UserData::kRunStoreMode)) << "the store's documents, fetched and agreed";
  EXPECT_EQ(answers(), std::vector<std::string>{"accept 2 1"});
  EXPECT_TRUE(LegalConsentCheck::run(UserData::kLoginMode)) << "another purpose asks for the device's";
  EXPECT_EQ(answers().back(), "accept 0");
  user.logout();
}

}  // namespace
