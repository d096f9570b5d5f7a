// The session against a devstore of its own: accounts, sign-in and out, what a restarted store
// finds, and how results of the worker calls reach the main thread.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QThreadPool>

#include "account_test_config.h"
#include "cfg_wrapper.h"
#include "devstore_process.h"
#include "event_wait.h"
#include "user_data.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::waitUntil;
using lumenpress::utilities::CfgSecret;
using lumenpress::utilities::CfgWrapper;

namespace {

constexpr char kBookstoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";

// What a store started anew finds.
std::string restartedSession() {
  QProcess probe;
  probe.start(QStringLiteral(LP_SESSION_PROBE), QStringList());
  if (!probe.waitForFinished(30000)) return "probe hung";
  return probe.readAllStandardOutput().trimmed().toStdString();
}

// Lets every worker end, then the main thread see all their results.
void settle() {
  QThreadPool::globalInstance()->waitForDone();
  for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
}

class Session : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store.running());
    lumenpress::testing::useAccountService(store);
    user->setApiBaseUrl(store.url("/de_de/"));
  }

  bool signIn(const QString &email, const QString &password) {
    QSignalSpy finished(user, &UserData::loginFinished);
    user->login(email, password);
    return waitUntil([&] { return finished.count() > 0; }) && finished.last().at(0).toBool();
  }

  DevstoreProcess store;
  UserData *user = UserData::instance();
};

TEST_F(Session, ANewAccountSignsInWithItsNewsletterAndARestartFindsIt) {
  QSignalSpy created(user, &UserData::createAccountFinished);
  user->setWantNewsLetter(true);
  user->createAccount("nina@example.com", "Nina", "Neu", "secret1");
  ASSERT_TRUE(waitUntil([&] { return created.count() == 1; }));
  ASSERT_TRUE(created[0][0].toBool());
  EXPECT_EQ(restartedSession(), "signed-out") << "an account alone is no sign-in";

  QSignalSpy record(user, &UserData::userInfoLoaded);
  ASSERT_TRUE(signIn("nina@example.com", "secret1"));
  EXPECT_EQ(record.count(), 1) << "the login is reported once the user's record came";
  EXPECT_TRUE(user->isLoggedIn());
  EXPECT_EQ(user->userInfo().firstname, "Nina");
  bool subscribed = false;
  for (const Json::Value &request : store.requests()) {
    if (request["path"].asString() == "/de_de/rest/V1/customer-set/subscription")
      subscribed = request["body"].asString().find("\"marketing\":1") != std::string::npos;
  }
  EXPECT_TRUE(subscribed) << "the newsletter is asked for after the first sign-in";
  EXPECT_EQ(restartedSession(), "signed-in nina@example.com");
}

TEST_F(Session, SignOutForgetsTheUserAndKeepsTheRest) {
  {
    CfgWrapper config(kBookstoreConfig, 1);
    config.write<std::string>("default_store", store.url("/en_us/"));
    config.write<std::string>("display_type", "list");
    config.save();
  }
  ASSERT_TRUE(signIn("reader@example.com", "reader"));
  EXPECT_EQ(user->getCurrentDisplayType(), "grid") << "another user does not inherit the layout";
  user->setCurrentDisplayType("list");
  QSignalSpy finished(user, &UserData::loginFinished);
  QSignalSpy forced(user, &UserData::forceLogOut);
  user->logout();

  EXPECT_FALSE(user->isLoggedIn());
  EXPECT_TRUE(user->getUserEmail().isEmpty());
  EXPECT_EQ(user->getCurrentDisplayType(), "grid");
  ASSERT_EQ(finished.count(), 1);
  EXPECT_FALSE(finished[0][0].toBool());
  EXPECT_EQ(forced.count(), 1);
  const CfgWrapper config(kBookstoreConfig, 0);
  EXPECT_EQ(config.read<std::string>("default_store", ""), store.url("/en_us/"));
  EXPECT_EQ(config.read<std::string>("display_type", ""), "grid");
  EXPECT_EQ(config.read<CfgSecret>("sac_access_token", ""), "");
  EXPECT_EQ(restartedSession(), "signed-out reader@example.com") << "the last address stays to be offered again";
}

TEST_F(Session, ARefusedSignInSaysWhyUntilTheAccountIsLocked) {
  QSignalSpy finished(user, &UserData::loginFinished);
  QSignalSpy refused(user, &UserData::loginFinishError);
  user->login("reader@example.com", "wrong");
  ASSERT_TRUE(waitUntil([&] { return refused.count() == 1; }));
  EXPECT_EQ(refused[0][0].toInt(), 1);
  EXPECT_FALSE(finished[0][0].toBool());

  for (int attempt = 0; attempt < 6 && refused.last().at(0).toInt() != 2; ++attempt) {
    const int before = refused.count();
    user->login("reader@example.com", "wrong");
    ASSERT_TRUE(waitUntil([&] { return refused.count() > before; }));
  }
  EXPECT_EQ(refused.last().at(0).toInt(), 2) << "wrong passwords lock the account for a while";
  const int before = refused.count();
  user->login("reader@example.com", "reader");
  ASSERT_TRUE(waitUntil([&] { return refused.count() > before; }));
  EXPECT_EQ(refused.last().at(0).toInt(), 2);
  EXPECT_FALSE(user->isLoggedIn());
}

TEST_F(Session, AddressesAndPasswordRecovery) {
  QSignalSpy resolved(user, &UserData::emailResolved);
  for (const char *address : {"reader@example.com", "nobody@example.com", "no address"}) {
    user->resolveEmail(address);
    settle();
  }
  ASSERT_EQ(resolved.count(), 3);
  EXPECT_EQ(resolved[0], QVariantList({true, 0}));
  EXPECT_EQ(resolved[1], QVariantList({false, 0}));
  EXPECT_EQ(resolved[2], QVariantList({false, 6}));
  EXPECT_EQ(user->getUserEmail(), "no address");

  store.clearRequests();
  QSignalSpy recovered(user, &UserData::recoverFinished);
  user->recoverPassword("whoever");
  ASSERT_TRUE(waitUntil([&] { return recovered.count() == 1; }));
  EXPECT_TRUE(recovered[0][0].toBool());
  EXPECT_EQ(store.requests().size(), 0u) << "recovery happens elsewhere";
}

// handleFinished runs once per finished watcher and cannot tell which one fired.
TEST_F(Session, EveryResultIsHandledOnce) {
  QSignalSpy resolved(user, &UserData::emailResolved);
  QSignalSpy created(user, &UserData::createAccountFinished);
  user->resolveEmail("reader@example.com");
  user->createAccount("ole@example.com", "Ole", "Ohm", "secret1");
  settle();
  EXPECT_EQ(resolved.count(), 1);
  EXPECT_EQ(created.count(), 1);

  user->resolveEmail("nobody@example.com");
  user->resolveEmail("reader@example.com");
  settle();
  ASSERT_EQ(resolved.count(), 2) << "a second call replaces the first, whose result is lost";
  EXPECT_TRUE(resolved.last().at(0).toBool());
}

}  // namespace
