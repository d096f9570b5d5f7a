// The user menu as a user signs in and out against a devstore of its own.
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "account_test_config.h"
#include "cfg_wrapper.h"
#include "devstore_process.h"
#include "event_wait.h"
#include "user_data.h"
#include "user_menu_model.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::waitUntil;
using lumenpress::utilities::CfgWrapper;

namespace {

constexpr char kBookstoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";

QList<int> uids(const UserMenuModel &menu) {
  QList<int> found;
  for (int row = 0; row < menu.rowCount(); ++row) found << menu.data(menu.index(row), UserMenuModel::UidRole).toInt();
  return found;
}

bool disabled(const UserMenuModel &menu, UserMenuModel::MenuElementType uid) {
  return menu.data(menu.index(uids(menu).indexOf(uid)), UserMenuModel::DisabledRole).toBool();
}

bool signIn(UserData *user) {
  QSignalSpy finished(user, &UserData::loginFinished);
  user->login("reader@example.com", "reader");
  return waitUntil([&] { return finished.count() > 0; }) && finished.last().at(0).toBool();
}

TEST(UserMenu, RowsColoursAndCountsFollowTheSession) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  lumenpress::testing::useAccountService(store);
  UserData *user = UserData::instance();
  user->setApiBaseUrl(store.url("/de_de/"));
  UserMenuModel menu;
  QAbstractItemModelTester tester(&menu, QAbstractItemModelTester::FailureReportingMode::QtTest);

  using Row = UserMenuModel;
  EXPECT_EQ(uids(menu), QList<int>({Row::STORELIST, Row::LOGIN}));
  EXPECT_TRUE(disabled(menu, Row::STORELIST)) << "until the store list came";
  menu.handleStoreLoaded(true);
  EXPECT_FALSE(disabled(menu, Row::STORELIST));

  {
    CfgWrapper config(kBookstoreConfig, 1);
    config.write<int>("user_color", 2);
    config.save();
  }
  ASSERT_TRUE(signIn(user));
  EXPECT_EQ(uids(menu), QList<int>({Row::TITLE, Row::PURCHASED, Row::WISHLIST, Row::STORELIST, Row::LANGUAGE,
                                    Row::SETTINGS, Row::LOGOUT}));
  EXPECT_EQ(menu.getTitleById(Row::TITLE), "reader@example.com");
  EXPECT_EQ(menu.iconColor(), QColor("#c3c4c3")) << "the stored colour wins";
  EXPECT_EQ(menu.textColor(), QColor("#000000"));
  EXPECT_EQ(menu.data(menu.index(6), Row::AlignmentRole).toInt(), 4);

  menu.handleWishlistLoaded(3);
  menu.handlePurchasedBookCountChanged(12);
  EXPECT_EQ(menu.getTitleById(Row::WISHLIST), "Wish list (3)");
  EXPECT_EQ(menu.getTitleById(Row::PURCHASED), "My purchases (12)");
  menu.handleWishlistLoaded(0);
  EXPECT_EQ(menu.getTitleById(Row::WISHLIST), "Wish list");
  menu.handleLanguageLoaded(false);
  EXPECT_TRUE(disabled(menu, Row::LANGUAGE));

  user->logout();
  EXPECT_EQ(uids(menu), QList<int>({Row::STORELIST, Row::LOGIN}));
  EXPECT_EQ(CfgWrapper(kBookstoreConfig, 0).read<int>("user_color", -1), -1) << "signing out forgets the colour";
  ASSERT_TRUE(signIn(user));
  const int chosen = CfgWrapper(kBookstoreConfig, 0).read<int>("user_color", -1);
  EXPECT_GE(chosen, 0);
  EXPECT_LE(chosen, 2);
  EXPECT_EQ(menu.getIconLocation(), QStringLiteral("qrc:/qml/images/user_%1.svg").arg(chosen));
}

}  // namespace
