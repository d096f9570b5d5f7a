// The consent store on disk: enciphered anew at every save, shared by processes under its
// lock, whole after a crash, and forgiving of a damaged file.
#include "legal_data.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "built_in_documents.h"
#include "cfg_wrapper.h"
#include "device_path.h"
#include "legal_cipher.h"
#include "serialization_utils.h"

namespace fs = std::filesystem;
using lumenpress::legal::BuiltInDocuments;
using lumenpress::legal::LegalAgreement;
using lumenpress::legal::LegalCipher;
using lumenpress::legal::LegalData;
using lumenpress::legal::LegalDocument;
using lumenpress::platform::MapDevicePath;
using lumenpress::utilities::CfgSecret;
using lumenpress::utilities::CfgWrapper;
using lumenpress::utilities::SerializationUtils;

namespace {

const char kEula[] = "e-ink|EULA";
const char kPrivacy[] = "e-ink|PRIVACYNOTICE";

std::string fileText(const std::string &device_path) {
  std::ifstream in(MapDevicePath(device_path), std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

std::string stored(const char *key, bool secret) {
  const CfgWrapper config(LegalData::kStorePath, 0);
  return secret ? config.read<CfgSecret>(key, "") : config.read<std::string>(key, "");
}

void writeStore(const std::string &json) {
  const std::string key(16, 'k');
  const std::string iv(16, 'v');
  CfgWrapper config(LegalData::kStorePath, 1);
  config.write<CfgSecret>("key", SerializationUtils::ToHex(key));
  config.write<CfgSecret>("iv", SerializationUtils::ToHex(iv));
  config.write<std::string>("data", LegalCipher::encrypt(json, key, iv));
  config.saveAndClose();
}

LegalDocument document(const std::string &name, const std::string &version) {
  LegalDocument doc;
  doc.name = name;
  doc.version = version;
  doc.title = "Terms of the store";
  doc.url = "http://127.0.0.1/docs/" + version;
  doc.services = {"bookstore"};
  return doc;
}

// Runs `work` in a child process and gives its id.
template <typename Work>
pid_t inChild(Work work) {
  const pid_t pid = fork();
  if (pid == 0) {
    work();
    _exit(0);
  }
  return pid;
}

bool exitedCleanly(pid_t pid) {
  int status = 0;
  return waitpid(pid, &status, 0) == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(LegalStore, EverySaveHasItsOwnKeyAndNothingReadableOnDisk) {
  LegalData store;
  store.mergeDocument(document("bookstore|TERMSOFUSE", "2.0"));
  const std::string key = stored("key", true), iv = stored("iv", true), data = stored("data", false);
  store.mergeDocument(document("bookstore|TERMSOFUSE", "2.0"));
  EXPECT_NE(stored("key", true), key);
  EXPECT_NE(stored("iv", true), iv);
  EXPECT_NE(stored("data", false), data);
  EXPECT_EQ(SerializationUtils::FromHex(stored("key", true)).size(), 16u);

  const std::string raw = fileText(LegalData::kStorePath);
  EXPECT_EQ(raw.find("TERMSOFUSE"), std::string::npos) << raw;
  EXPECT_EQ(raw.find("agreement"), std::string::npos);
}

TEST(LegalStore, AgreementsAreKeptAndAnUnknownVersionChangesNothing) {
  LegalData store;
  EXPECT_EQ(store.setAgreement(kEula, "1.0", "reader-7", "session-1", LegalAgreement::kAgreed, 1700000000),
            LegalData::kOk);
  store.mergeDocument(document(kEula, "1.0"));
  LegalAgreement agreement;
  ASSERT_EQ(store.getAgreement(kEula, "1.0", agreement), LegalData::kOk);
  EXPECT_EQ(agreement.user_id, "reader-7") << "a merge keeps the agreement";
  EXPECT_EQ(agreement.status, LegalAgreement::kAgreed);
  EXPECT_EQ(agreement.time, 1700000000);
  EXPECT_FALSE(agreement.sent_to_server);
  EXPECT_EQ(store.markSent(kEula, "1.0"), LegalData::kOk);
  ASSERT_EQ(store.getAgreement(kEula, "1.0", agreement), LegalData::kOk);
  EXPECT_TRUE(agreement.sent_to_server);

  const std::string before = fileText(LegalData::kStorePath);
  EXPECT_EQ(store.setAgreement(kEula, "9.9", "reader-7", "", 1, 1), LegalData::kNotFound);
  EXPECT_EQ(store.markSent("nobody|NOTHING", "1.0"), LegalData::kNotFound);
  EXPECT_EQ(store.getAgreement(kEula, "9.9", agreement), LegalData::kNotFound);
  EXPECT_EQ(fileText(LegalData::kStorePath), before);
}

TEST(LegalStore, ADamagedStoreReadsAsTheBuiltInDocumentsAlone) {
  {
    CfgWrapper config(LegalData::kStorePath, 1);
    config.write<std::string>("data", "%%% not base64 %%%");
    config.saveAndClose();
  }
  LegalData store;
  std::vector<LegalDocument> documents;
  store.getDocuments(documents);
  ASSERT_EQ(documents.size(), 2u);
  EXPECT_EQ(documents[0].name, kEula);
  EXPECT_EQ(documents[0].title, "@EULA");
  EXPECT_EQ(documents[1].name, kPrivacy);

  writeStore(R"([{"name":"bookstore|EULA","versions":[{"version":"3","docinfo":{"sort_order":"x"},)"
             R"("agreement":{"status":"1","time":5,"sent_to_server":"yes","user_id":7}}]}, 17])");
  LegalAgreement agreement;
  ASSERT_EQ(store.getAgreement("bookstore|EULA", "3", agreement), LegalData::kOk);
  EXPECT_EQ(agreement.status, 0) << "a status given as text";
  EXPECT_EQ(agreement.time, 5);
  EXPECT_FALSE(agreement.sent_to_server);
  EXPECT_EQ(agreement.user_id, "");

  writeStore(R"({"name":"not an array"})");
  store.getDocuments(documents);
  EXPECT_EQ(documents.size(), 2u);
}

TEST(LegalStore, ALockFileThatCannotBeMadeDoesNotStopTheStore) {
  fs::create_directories(MapDevicePath(LegalData::kLockPath));
  LegalData store;
  EXPECT_EQ(store.setAgreement(kPrivacy, "1.0", "reader-7", "", LegalAgreement::kPreagreed, 42), LegalData::kOk);
  LegalAgreement agreement;
  ASSERT_EQ(store.getAgreement(kPrivacy, "1.0", agreement), LegalData::kOk);
  EXPECT_EQ(agreement.status, LegalAgreement::kPreagreed);
  fs::remove(MapDevicePath(LegalData::kLockPath));
}

TEST(LegalStore, TwoProcessesAgreeingAtOnceBothKeepTheirs) {
  const auto agreeMany = [](const char *name) {
    return [name] {
      LegalData store;
      for (int time = 1; time <= 100; ++time) store.setAgreement(name, "1.0", name, "", LegalAgreement::kAgreed, time);
    };
  };
  const pid_t first = inChild(agreeMany(kEula));
  const pid_t second = inChild(agreeMany(kPrivacy));
  ASSERT_TRUE(exitedCleanly(first));
  ASSERT_TRUE(exitedCleanly(second));
  LegalData store;
  for (const char *name : {kEula, kPrivacy}) {
    LegalAgreement agreement;
    ASSERT_EQ(store.getAgreement(name, "1.0", agreement), LegalData::kOk);
    EXPECT_EQ(agreement.time, 100) << name;
    EXPECT_EQ(agreement.user_id, name);
  }
}

TEST(LegalStore, AProcessKilledWhileSavingLeavesAWholeStore) {
  const pid_t writer = inChild([] {
    LegalData store;
    for (int i = 0;; ++i) store.mergeDocument(document("bookstore|TERMSOFUSE", std::to_string(i)));
  });
  const auto saved = [] { return !stored("data", false).empty(); };
  for (int i = 0; i < 500 && !saved(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  kill(writer, SIGKILL);
  waitpid(writer, nullptr, 0);

  LegalData store;
  std::vector<LegalDocument> documents;
  store.getDocuments(documents);
  EXPECT_GT(documents.size(), 2u) << "the merged documents read back, not only the built-in ones";
}

TEST(BuiltInDocuments, TheDevicesOwnFileAndLanguageAreChosen) {
  EXPECT_EQ(BuiltInDocuments::languageGroup("be"), "ru");
  EXPECT_EQ(BuiltInDocuments::languageGroup("gr"), "ru");
  EXPECT_EQ(BuiltInDocuments::languageGroup("kk"), "kk");
  EXPECT_EQ(BuiltInDocuments::languageGroup("fr"), "en");

  {
    CfgWrapper device("/coreapp/config/device.cfg", 1);
    device.write<int>("use_audio_player", 0);
    device.saveAndClose();
  }
  const std::string folder = MapDevicePath(BuiltInDocuments::kFolder);
  std::ofstream(folder + "/e-ink_EULA_en_1.1.no-a.html") << "<p>without audio</p>";
  std::ofstream(folder + "/e-ink_EULA_en_1.2.no-w.html") << "<p>without wireless</p>";
  std::ofstream(folder + "/e-ink_PRIVACYNOTICE_en_1.10.html") << "<p>newer</p>";
  LegalData store;
  std::vector<LegalDocument> documents;
  store.getDocumentsForServices(documents, {"e-ink"});
  ASSERT_EQ(documents.size(), 2u);
  EXPECT_EQ(documents[0].version, "1.1") << "the file for a device without audio";
  EXPECT_EQ(documents[0].url, "/coreapp/license/e-ink_EULA_en_1.1.no-a.html");
  EXPECT_EQ(documents[1].version, "1.10") << "1.10 comes after 1.0";
  store.getDocumentsForServices(documents, {"bookstore"});
  EXPECT_TRUE(documents.empty());
}

}  // namespace
