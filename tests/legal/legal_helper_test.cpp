// The consent flows against devstore's legal service: agreeing in bulk, reporting now or
// later, and documents kept on the device.
#include "legal_helper.h"

#include <gtest/gtest.h>
#include <json/json.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "account_test_config.h"
#include "device_path.h"
#include "devstore_process.h"
#include "legal_data.h"
#include "panelkit.h"

namespace fs = std::filesystem;
using lumenpress::legal::LegalAgreement;
using lumenpress::legal::LegalData;
using lumenpress::legal::LegalDocument;
using lumenpress::legal::LegalHelper;
using lumenpress::platform::DeviceRoot;
using lumenpress::platform::MapDevicePath;
using lumenpress::testing::DevstoreProcess;

namespace {

class LegalFlows : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store.running());
    lumenpress::testing::useLegalService(store);
    LegalDocument terms;
    terms.name = "bookstore|TERMSOFUSE";
    terms.version = "1.1";
    terms.services = {"bookstore"};
    LegalData().mergeDocument(terms);
  }

  static LegalAgreement agreementOf(const std::string &name, const std::string &version) {
    LegalAgreement agreement;
    LegalData().getAgreement(name, version, agreement);
    return agreement;
  }

  int reports() const {
    int count = 0;
    for (const Json::Value &request : store.requests()) {
      if (request["path"].asString().rfind("/legal/v1/process/", 0) == 0) ++count;
    }
    return count;
  }

  static void network(bool up) {
    const std::string flag = DeviceRoot() + "/host/network_down";
    if (up) {
      fs::remove(flag);
    } else {
      std::ofstream(flag) << "";
    }
  }

  DevstoreProcess store;
  LegalHelper helper;
};

TEST_F(LegalFlows, AgreedWithoutNetworkIsSentWhenTheNetworkIsBack) {
  helper.agreeWithAllDocumentsForServices({LegalChecker::kBookstore}, "reader-7", false, "session-1");
  EXPECT_EQ(agreementOf("bookstore|TERMSOFUSE", "1.1").status, LegalAgreement::kAgreed);
  EXPECT_EQ(reports(), 0) << "not asked to send";

  network(false);
  helper.agreeWithAllDocumentsForServices({LegalChecker::kBookstore}, "reader-7", true, "session-1");
  EXPECT_EQ(reports(), 0) << "no network";
  EXPECT_FALSE(agreementOf("bookstore|TERMSOFUSE", "1.1").sent_to_server);

  network(true);
  helper.agreeWithAllDocumentsForServices({LegalChecker::kDevice, LegalChecker::kBookstore}, "reader-7", true, "");
  EXPECT_EQ(reports(), 3) << "the store's terms and the device's two documents";
  EXPECT_TRUE(agreementOf("bookstore|TERMSOFUSE", "1.1").sent_to_server);
  EXPECT_EQ(agreementOf("bookstore|TERMSOFUSE", "1.1").session_id, "session-1");
  helper.sendPendingAgreements();
  EXPECT_EQ(reports(), 3) << "each consent is reported once";
}

TEST_F(LegalFlows, AnAgreedDocumentKeepsItsTimeAndPreagreedOnesAreDiscarded) {
  LegalData().setAgreement("bookstore|TERMSOFUSE", "1.1", "reader-7", "", LegalAgreement::kAgreed, 1234);
  LegalData().setAgreement("e-ink|EULA", "1.0", "", "", LegalAgreement::kPreagreed, 99);
  LegalData().setAgreement("e-ink|PRIVACYNOTICE", "1.0", "", "", LegalAgreement::kAgreed, 99);
  helper.agreeWithAllDocumentsForServices({LegalChecker::kBookstore}, "someone-else", false, "");
  EXPECT_EQ(agreementOf("bookstore|TERMSOFUSE", "1.1").time, 1234);
  EXPECT_EQ(agreementOf("bookstore|TERMSOFUSE", "1.1").user_id, "reader-7");
  EXPECT_TRUE(helper.isAccepted({LegalChecker::kDevice})) << "the EULA ahead of login counts";
  helper.discardPreagreedDocumentsForServices({LegalChecker::kDevice}, "");
  EXPECT_EQ(agreementOf("e-ink|EULA", "1.0").status, LegalAgreement::kNotAgreed);
  EXPECT_FALSE(helper.isAccepted({LegalChecker::kDevice}));
}

TEST_F(LegalFlows, ADocumentIsKeptWholeOrNotAtAll) {
  const std::string target = LegalHelper::documentFilePath("bookstore|TERMSOFUSE", "1.1", "be", true);
  EXPECT_EQ(target, "/mnt/ext1/system/license/bookstore_TERMSOFUSE_ru_1.1.html");
  ASSERT_TRUE(
      helper.downloadDocument("bookstore|TERMSOFUSE", "1.1", "be", store.url("/legal/pages/TERMSOFUSE_ru.html")));
  EXPECT_TRUE(fs::exists(MapDevicePath(target)));
  EXPECT_FALSE(fs::exists(MapDevicePath(target + ".tmp")));

  Json::Value fault;
  fault["path"] = "/legal/pages/PRIVACYNOTICE_en.html";
  fault["truncate"] = true;
  ASSERT_TRUE(store.addFault(fault));
  EXPECT_FALSE(
      helper.downloadDocument("e-ink|PRIVACYNOTICE-x", "2.0", "en", store.url("/legal/pages/PRIVACYNOTICE_en.html")));
  EXPECT_FALSE(fs::exists(MapDevicePath(LegalHelper::documentFilePath("e-ink|PRIVACYNOTICE-x", "2.0", "en", true))));
}

// The last entry of the task journal with that call, or null.
Json::Value journalEntry(const std::string &call) {
  std::ifstream journal(DeviceRoot() + "/host/task_journal.jsonl");
  std::string line;
  Json::Value entry, found;
  Json::Reader reader;
  while (std::getline(journal, line)) {
    if (reader.parse(line, entry) && entry["call"] == call) found = entry;
  }
  return found;
}

std::string fileText(const fs::path &path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST_F(LegalFlows, AProcessKilledWhileSavingDocumentsLeavesEachWholeOrATmpFile) {
  const std::string page = store.url("/legal/pages/TERMSOFUSE_en.html");
  ASSERT_TRUE(helper.downloadDocument("bookstore|TERMSOFUSE", "whole", "en", page));
  const fs::path folder =
      fs::path(MapDevicePath(LegalHelper::documentFilePath("bookstore|TERMSOFUSE", "whole", "en", true))).parent_path();
  const std::string whole = fileText(folder / "bookstore_TERMSOFUSE_en_whole.html");
  ASSERT_FALSE(whole.empty());

  const pid_t writer = fork();
  if (writer == 0) {
    for (int version = 0;; ++version)
      LegalHelper().downloadDocument("bookstore|TERMSOFUSE", std::to_string(version), "en", page);
  }
  const auto saved = [&] { return std::distance(fs::directory_iterator(folder), fs::directory_iterator()) > 20; };
  for (int i = 0; i < 1000 && !saved(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  kill(writer, SIGKILL);
  waitpid(writer, nullptr, 0);

  int unfinished = 0;
  for (const fs::directory_entry &file : fs::directory_iterator(folder)) {
    if (file.path().extension() == ".tmp") {
      ++unfinished;
    } else {
      EXPECT_EQ(fileText(file.path()), whole) << file.path();
    }
  }
  EXPECT_LE(unfinished, 1);
}

TEST_F(LegalFlows, ABuiltInDocumentOpensFromTheUsersCopyInTheBrowser) {
  ASSERT_TRUE(helper.openDocumentInBrowser(LegalChecker::kDevice, LegalHelper::kEula, true, "", false));
  const std::string copy = LegalHelper::documentFilePath("e-ink|EULA", "1.0", "en", true);
  EXPECT_TRUE(fs::exists(MapDevicePath(copy)));
  // The browser is started through the pane starter, which records itself, then the pane.
  Json::Value pane;
  for (int i = 0; i < 500 && pane.isNull(); ++i) {
    pane = journalEntry("webpane.app");
    if (pane.isNull()) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  ASSERT_FALSE(pane.isNull()) << "the browser was started";
  EXPECT_EQ(pane["opens"].asString(), copy);
  EXPECT_EQ(pane["argv"][0].asString(), "0") << "the pane's own arguments, without its path and name";
  EXPECT_EQ(journalEntry("spawn_pane.app")["argv"][0].asString(), "/coreapp/bin/webpane.app");
  const Json::Value task = journalEntry("NewTaskEx");
  EXPECT_EQ(task["path"].asString(), "/coreapp/bin/spawn_pane.app");
  EXPECT_NE(task.toStyledString().find("-fullscreen"), std::string::npos);
  EXPECT_FALSE(helper.openDocumentInBrowser("nobody|NOTHING", "1", "en", "", "", false, false));
}

}  // namespace
