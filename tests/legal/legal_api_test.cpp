// The legal service client against devstore's legal service: the signed queries in their
// order, the answers of every shape, and the endpoint the beta file chooses.
#include "legal_api.h"

#include <gtest/gtest.h>

#include <fstream>

#include "account_test_config.h"
#include "device_path.h"
#include "devstore_process.h"
#include "panelkit.h"

using lumenpress::legal::LegalApi;
using lumenpress::platform::MapDevicePath;
using lumenpress::testing::DevstoreProcess;

namespace {

class LegalService : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store.running());
    lumenpress::testing::useLegalService(store);
  }

  // The one request the service logged below `path`.
  Json::Value logged(const std::string &path) const {
    Json::Value found;
    for (const Json::Value &request : store.requests()) {
      if (request["path"].asString().rfind(path, 0) == 0) found = request;
    }
    return found;
  }

  static std::vector<std::string> queryKeys(const Json::Value &request) {
    std::vector<std::string> keys;
    std::string query = request["target"].asString();
    query = query.substr(query.find('?') + 1);
    for (size_t at = 0; at < query.size();) {
      const size_t end = query.find('&', at);
      const std::string pair = query.substr(at, end - at);
      keys.push_back(pair.substr(0, pair.find('=')));
      at = end == std::string::npos ? query.size() : end + 1;
    }
    return keys;
  }

  DevstoreProcess store;
  LegalApi api;
};

TEST(LegalNames, ServiceAndDocumentAndTheDateOfConsent) {
  std::string service, document;
  LegalApi::splitDocumentName("bookstore|TERMS|OF|USE", service, document);
  EXPECT_EQ(service, "bookstore");
  EXPECT_EQ(document, "TERMS|OF|USE");
  LegalApi::splitDocumentName("EULA", service, document);
  EXPECT_EQ(service, "e-ink");
  EXPECT_EQ(document, "EULA");
  EXPECT_EQ(LegalApi::agreedDate(0), "2000-01-01T00:00:00+00:00");
  EXPECT_EQ(LegalApi::agreedDate(946684799), "2000-01-01T00:00:00+00:00");
  EXPECT_EQ(LegalApi::agreedDate(946684800), "2000-01-01 00:00:00");
  EXPECT_EQ(LegalApi::agreedDate(1764000000), "2025-11-24 16:00:00");
}

TEST_F(LegalService, TheListInGroupsWithItsSignedQuery) {
  const auto documents = api.getDocumentList("en");
  ASSERT_EQ(documents.size(), 3u);
  EXPECT_EQ(documents[0], std::make_pair(std::string("e-ink|EULA"), std::string("1.0")));
  EXPECT_EQ(documents[2].first, "bookstore|TERMSOFUSE");
  const Json::Value request = logged("/legal/v1/list/e-ink/en");
  EXPECT_EQ(request["status"].asInt(), 200) << "the service found the signature good";
  EXPECT_EQ(queryKeys(request), (std::vector<std::string>{"device_id", "fw_version", "nonce", "client_signature"}));
  EXPECT_EQ(request["query"]["device_id"].asString(), GetSerialNumber());
  EXPECT_TRUE(api.getDocumentListJson("en").isArray());
}

TEST_F(LegalService, ADocumentsPlaceAndItsData) {
  const std::string url = api.getDocumentUrl("e-ink|PRIVACYNOTICE", "de", "reader-7", "session-1");
  EXPECT_EQ(url, store.url("/legal/pages/PRIVACYNOTICE_de.html"));
  EXPECT_EQ(store.get(url).status, 200);
  const Json::Value request = logged("/legal/v1/docs/PRIVACYNOTICE/de");
  EXPECT_EQ(queryKeys(request), (std::vector<std::string>{"device_type", "service_type", "user_id", "session_id",
                                                          "device_id", "fw_version", "nonce", "client_signature"}));
  EXPECT_EQ(request["query"]["service_type"].asString(), "e-ink");
  EXPECT_EQ(api.getDocumentExtendedInfo("bookstore|TERMSOFUSE", "en", "", "")["version"].asString(), "1.1");
  EXPECT_EQ(api.getDocumentUrl("e-ink|NOSUCHTHING", "en", "", ""), "") << "a 404";
  EXPECT_TRUE(api.getDocumentExtendedInfo("e-ink|NOSUCHTHING", "en", "", "").isNull());
}

TEST_F(LegalService, ConsentIsReportedAndABadSignatureRefused) {
  EXPECT_EQ(api.sendAgreement("bookstore|TERMSOFUSE", "en", true, "1.1", "reader-7", "session-1", 0), 0);
  const Json::Value request = logged("/legal/v1/process/TERMSOFUSE/en");
  EXPECT_EQ(queryKeys(request),
            (std::vector<std::string>{"agree", "agreed_date", "document_version", "device_type", "service_type",
                                      "user_id", "session_id", "device_id", "nonce", "client_signature"}));
  EXPECT_EQ(request["query"]["agreed_date"].asString(), "2000-01-01T00:00:00+00:00");
  EXPECT_EQ(request["query"]["agree"].asString(), "1");

  std::string target = request["target"].asString();
  target.replace(target.find("agree=1"), 7, "agree=0");
  EXPECT_EQ(store.get(target).status, 403) << "a changed query no longer matches its signature";
  EXPECT_EQ(store.get("/legal/v1/list/e-ink/en?device_id=1").status, 403) << "no signature at all";
}

TEST_F(LegalService, TheBetaFileChoosesTheTestEndpoint) {
  EXPECT_EQ(LegalApi::legalBaseUrl(false), "http://127.0.0.1:8480/legal");
  std::ofstream(MapDevicePath(LegalApi::kBetaFile)) << "";
  EXPECT_EQ(LegalApi::legalBaseUrl(true), "http://127.0.0.1:8480/legal-test/v1");
  EXPECT_EQ(api.sendAgreement("e-ink|EULA", "en", false, "1.0", "", "", 1764000000), 0);
  EXPECT_EQ(logged("/legal-test/v1/process/EULA/en")["query"]["agreed_date"].asString(), "2025-11-24 16:00:00");
  EXPECT_EQ(api.getLocalDocumentUrl("e-ink|EULA", "/en", false, true),
            "http://127.0.0.1:8480/legal-test/e-ink/EULA/en/no-a");
  EXPECT_EQ(api.getLocalDocumentUrl("e-ink|EULA", "/en", true, false),
            "http://127.0.0.1:8480/legal-test/e-ink/EULA/en/no-w");
  EXPECT_EQ(api.getLocalDocumentUrl("bookstore|EULA", "", false, false),
            "http://127.0.0.1:8480/legal-test/bookstore/EULA");
}

TEST_F(LegalService, AFailingServiceGivesEmptyAnswers) {
  Json::Value fault;
  fault["path"] = "/legal/v1/list/e-ink/en";
  fault["status"] = 500;
  fault["count"] = 2;
  ASSERT_TRUE(store.addFault(fault));
  EXPECT_TRUE(api.getDocumentList("en").empty());
  EXPECT_TRUE(api.getDocumentListJson("en").isNull());
  fault["path"] = "/legal/v1/process/EULA/en";
  fault["count"] = 1;
  ASSERT_TRUE(store.addFault(fault));
  EXPECT_EQ(api.sendAgreement("e-ink|EULA", "en", true, "1.0", "", "", 0), -1);

  fault = Json::Value();
  fault["path"] = "/legal/v1/list/e-ink/en";
  fault["status"] = 200;
  fault["body"] = R"([{"doc":"e-ink|EULA","version":"1"}, [{"doc":"a","version":2}, {"doc":"b"}, 7,)"
                  R"( {"doc":"e-ink|EULA","version":"2"}]])";
  ASSERT_TRUE(store.addFault(fault));
  const auto documents = api.getDocumentList("en");
  ASSERT_EQ(documents.size(), 1u) << "only objects with both texts, inside a group";
  EXPECT_EQ(documents[0].second, "2");
}

}  // namespace
