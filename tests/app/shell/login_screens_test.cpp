// Signing in through the screens, offscreen, as a user would: the user icon, the menu, the
// e-mail and password steps, a wrong password, and the menu that follows the session.
#include <gtest/gtest.h>

#include <json/json.h>
#include <QQuickItem>
#include <QSignalSpy>

#include "account_test_config.h"
#include "event_wait.h"
#include "store_window.h"
#include "user_data.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::StoreWindow;
using lumenpress::testing::tap;
using lumenpress::testing::waitUntil;

namespace {

class LoginScreens : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store.running());
    lumenpress::testing::useAccountService(store);
    if (UserData::instance()->isLoggedIn()) UserData::instance()->logout();
  }

  void start() {
    window = std::make_unique<StoreWindow>(store);
    ASSERT_TRUE(window->started());
  }

  // Waits for the one shown item of that name and taps it.
  bool tapShown(const char *name) {
    if (!waitUntil([&] { return window->shown(name).size() == 1; })) return false;
    tap(window->shown(name).front());
    return true;
  }

  bool type(const char *field, const QString &text) {
    if (!waitUntil([&] { return window->shown(field).size() == 1; })) return false;
    return window->shown(field).front()->setProperty("text", text);
  }

  bool tapMenuRow(int uid) {
    if (!tapShown("userLoginIcon")) return false;
    QQuickItem *row = nullptr;
    waitUntil([&] {
      for (QQuickItem *item : window->shown("userMenuRow")) {
        if (item->property("menuId").toInt() == uid) row = item;
      }
      return row != nullptr;
    });
    if (row) tap(row);
    return row != nullptr;
  }

  DevstoreProcess store;
  std::unique_ptr<StoreWindow> window;
};

TEST_F(LoginScreens, SignInFromTheUserMenuAndSeeTheMenuFollow) {
  start();
  ASSERT_TRUE(tapMenuRow(0)) << "the menu of a guest offers to sign in";
  ASSERT_TRUE(tapShown("loginWithEmail"));
  ASSERT_TRUE(type("emailField", "reader@example.com"));
  ASSERT_TRUE(tapShown("emailNext"));
  ASSERT_TRUE(type("passwordField", "wrong"));
  ASSERT_TRUE(tapShown("passwordLogin"));
  ASSERT_TRUE(waitUntil([&] { return window->texts("infoText").size() == 1; }));
  EXPECT_TRUE(window->texts("infoText").front().startsWith("The e-mail address and the password do not match"))
      << window->texts("infoText").front().toStdString();
  ASSERT_TRUE(tapShown("dialogAccept")) << "the message is confirmed before the password is typed again";

  ASSERT_TRUE(type("passwordField", "reader"));
  ASSERT_TRUE(tapShown("passwordLogin"));
  ASSERT_TRUE(tapShown("welcomeFinish"));
  ASSERT_TRUE(waitUntil([&] { return window->item("home")->isVisible(); }));
  EXPECT_TRUE(UserData::instance()->isLoggedIn());

  ASSERT_TRUE(tapShown("userLoginIcon"));
  ASSERT_TRUE(waitUntil([&] { return window->texts("userMenuRow").contains("reader@example.com"); }));
  EXPECT_EQ(window->texts("userMenuRow").size(), 7);
}

TEST_F(LoginScreens, AnUnknownAddressCreatesAnAccount) {
  start();
  ASSERT_TRUE(tapMenuRow(0));
  ASSERT_TRUE(tapShown("loginWithEmail"));
  ASSERT_TRUE(type("emailField", "new.reader@example.com"));
  ASSERT_TRUE(tapShown("emailNext"));
  ASSERT_TRUE(type("firstNameField", "Nora"));
  ASSERT_TRUE(type("lastNameField", "Neu"));
  ASSERT_TRUE(tapShown("newUserNext"));
  ASSERT_TRUE(type("newPasswordField", "secret1"));
  ASSERT_TRUE(type("repeatPasswordField", "secret1"));
  ASSERT_TRUE(tapShown("createAccount"));
  ASSERT_TRUE(tapShown("welcomeFinish"));
  EXPECT_TRUE(UserData::instance()->isLoggedIn());
  EXPECT_EQ(UserData::instance()->getUserEmail(), "new.reader@example.com");
}

// The storefront's English store under another name of its host: choosing it signs out.
TEST_F(LoginScreens, AStoreOnAnotherHostAsksBeforeItSignsOut) {
  Json::Value fault;
  fault["path"] = "/de_de/rest/V1/device-integration/stores-all";
  fault["status"] = 200;
  fault["body"] = "[{\"url\":\"" + store.url("/de_de/") +
                  "\",\"language\":\"Deutsch\",\"langCode\":\"de\",\"status\":\"enable\"},"
                  "{\"url\":\"http://localhost:" +
                  std::to_string(store.port()) +
                  "/en_us/\",\"language\":\"English\",\"langCode\":\"en\",\"status\":\"enable\"}]";
  ASSERT_TRUE(store.addFault(fault));
  start();
  UserData *user = UserData::instance();
  QSignalSpy finished(user, &UserData::loginFinished);
  user->login("reader@example.com", "reader");
  ASSERT_TRUE(waitUntil([&] { return finished.count() > 0; }));
  ASSERT_TRUE(user->isLoggedIn());

  ASSERT_TRUE(tapMenuRow(4)) << "the store list";
  QQuickItem *english = nullptr;
  ASSERT_TRUE(waitUntil([&] {
    for (QQuickItem *item : window->shown("storeChoice")) {
      if (item->property("text").toString() == "English") english = item;
    }
    return english != nullptr;
  }));
  tap(english);
  ASSERT_TRUE(waitUntil([&] { return window->shown("auto_logout_dialog").size() == 1; }));
  EXPECT_TRUE(user->isLoggedIn()) << "nothing happens before the answer";
  ASSERT_TRUE(tapShown("dialogAccept"));
  EXPECT_FALSE(user->isLoggedIn());
  EXPECT_TRUE(window->item("home")->isVisible());
  EXPECT_TRUE(window->shown("auto_logout_dialog").isEmpty());
}

}  // namespace
