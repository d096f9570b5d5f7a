#include "legal_helper.h"

#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>

#include "built_in_documents.h"
#include "device_path.h"
#include "framework/filesystem.h"
#include "http_request_runner.h"
#include "legal_api.h"
#include "legal_data.h"
#include "lp_log.h"
#include "panelkit.h"
#include "serialization_utils.h"
#include "services_helper.h"

namespace fs = std::filesystem;
using lumenpress::platform::MapDevicePath;
using lumenpress::utilities::HttpRequest;
using lumenpress::utilities::HttpRequestRunner;
using lumenpress::utilities::SerializationUtils;

namespace lumenpress::legal {

namespace {

constexpr int kNetworkMask = 0xf00;

bool exists(const std::string &device_path) {
  struct stat info {};
  return ::stat(MapDevicePath(device_path).c_str(), &info) == 0;
}

// The form made for this device lies in front of ".html".
std::string suffixed(const std::string &path, const std::string &suffix) {
  return path.substr(0, path.size() - 5) + suffix + ".html";
}

std::vector<LegalDocument> documentsOf(const std::vector<LegalChecker::ServiceType> &services) {
  std::vector<LegalDocument> documents;
  LegalData().getDocumentsForServices(documents, ServicesHelper::serviceNames(services));
  return documents;
}

}  // namespace

std::string LegalHelper::documentName(DocumentType type) {
  switch (type) {
    case kEula:
      return "EULA";
    case kPrivacyNotice:
      return "PRIVACYNOTICE";
    case kTermsOfUse:
      return "TERMSOFUSE";
  }
  return {};
}

bool LegalHelper::runConsentRefresh() {
  const std::string tool = MapDevicePath("/coreapp/bin/consent_refresh");
  return std::system((tool + " -force -nosync -nosendunsent").c_str()) == 0;
}

std::string LegalHelper::documentFilePath(const std::string &name, const std::string &version,
                                          const std::string &language, bool userCopy) {
  return std::string(userCopy ? kUserFolder : BuiltInDocuments::kFolder) + "/" + BuiltInDocuments::fileStem(name) +
         "_" + BuiltInDocuments::languageGroup(language) + "_" + version + ".html";
}

void LegalHelper::agreeWithAllDocumentsForServices(const std::vector<LegalChecker::ServiceType> &services,
                                                   const std::string &userId, const bool sendNow,
                                                   const std::string &sessionId) {
  LegalData store;
  for (const LegalDocument &document : documentsOf(services)) {
    LP_LOG(LP_LOG_INFO, "Agree with document [%s] version [%s]", document.name.c_str(), document.version.c_str());
    if (document.agreement.status == LegalAgreement::kAgreed) continue;
    store.setAgreement(document.name, document.version, userId, sessionId, LegalAgreement::kAgreed,
                       static_cast<std::int64_t>(std::time(nullptr)));
  }
  if (sendNow && (QueryNetwork() & kNetworkMask)) sendPendingAgreements();
}

void LegalHelper::discardPreagreedDocumentsForServices(const std::vector<LegalChecker::ServiceType> &services,
                                                       const std::string &userId) {
  LegalData store;
  for (const LegalDocument &document : documentsOf(services)) {
    LP_LOG(LP_LOG_INFO, "Discard preagreed document [%s] version [%s]", document.name.c_str(),
           document.version.c_str());
    if (document.agreement.status != LegalAgreement::kPreagreed) continue;
    store.setAgreement(document.name, document.version, userId, "", LegalAgreement::kNotAgreed,
                       static_cast<std::int64_t>(std::time(nullptr)));
  }
}

bool LegalHelper::isAccepted(const std::vector<LegalChecker::ServiceType> &services) {
  for (const LegalDocument &document : documentsOf(services)) {
    if (document.agreement.status == LegalAgreement::kNotAgreed) return false;
  }
  return true;
}

// A report that fails keeps its flag down and goes out at the next call.
void LegalHelper::sendPendingAgreements() {
  LegalData store;
  std::vector<LegalDocument> documents;
  store.getDocuments(documents);
  LegalApi api;
  for (const LegalDocument &document : documents) {
    const LegalAgreement &agreement = document.agreement;
    if (agreement.status != LegalAgreement::kAgreed || agreement.sent_to_server) continue;
    if (api.sendAgreement(document.name, currentLang(), true, document.version, agreement.user_id, agreement.session_id,
                          agreement.time) == 0) {
      store.markSent(document.name, document.version);
    }
  }
}

std::string LegalHelper::existingFile(const std::string &name, const std::string &version, const std::string &language,
                                      bool *builtIn) {
  const auto suffixes = BuiltInDocuments::deviceSuffixes();
  for (const bool user : {true, false}) {
    const std::string path = documentFilePath(name, version, language, user);
    *builtIn = !user;
    for (const auto &suffix : suffixes) {
      if (exists(suffixed(path, suffix))) return suffixed(path, suffix);
    }
    if (exists(path)) return path;
  }
  return {};
}

bool LegalHelper::downloadDocument(const std::string &name, const std::string &version, const std::string &language,
                                   const std::string &url) {
  bool builtIn = false;
  if (!existingFile(name, version, language, &builtIn).empty()) return true;
  HttpRequestRunner runner;
  long status = 0;
  std::vector<char> body;
  if (runner.PerformRequest(HttpRequest("GET", url), &status, &body, LegalApi::kTimeoutSeconds) != 0 || status != 200) {
    return false;
  }
  const std::string target = documentFilePath(name, version, language, true);
  std::error_code error;
  fs::create_directories(MapDevicePath(kUserFolder), error);
  LP_LOG(LP_LOG_INFO, "********** Saving legal document [%s] version [%s] to file [%s]", name.c_str(), version.c_str(),
         target.c_str());
  {
    std::ofstream out(MapDevicePath(target + ".tmp"), std::ios::binary | std::ios::trunc);
    out.write(body.data(), static_cast<std::streamsize>(body.size()));
    if (!out.flush()) return false;
  }
  return system::filesystem::MoveFile(target + ".tmp", target);
}

bool LegalHelper::openDocumentInBrowser(LegalChecker::ServiceType service, DocumentType document, bool fullscreen,
                                        std::string language, bool forceOffline) {
  std::string name = ServicesHelper::serviceName(service) + "|" + documentName(document);
  if (!language.empty()) name += "-" + language;
  LP_LOG(LP_LOG_INFO, "Full document name [%s]", name.c_str());
  std::vector<LegalDocument> documents;
  LegalData().getDocuments(documents);
  const LegalDocument *latest = nullptr;
  for (const LegalDocument &candidate : documents) {
    if (candidate.name == name) latest = &candidate;
  }
  if (latest) {
    return openDocumentInBrowser(name, latest->version, language.empty() ? currentLang() : language, latest->url,
                                 latest->title, fullscreen, forceOffline);
  }
  return openDocumentInBrowser(name, "1.0", currentLang(), "", name, fullscreen, forceOffline);
}

bool LegalHelper::openDocumentInBrowser(std::string name, std::string version, std::string language, std::string,
                                        std::string title, bool fullscreen, bool forceOffline) {
  bool builtIn = false;
  std::string path = existingFile(name, version, language, &builtIn);
  if (path.empty()) return false;
  if (builtIn) {
    const std::string copy = documentFilePath(name, version, language, true);
    std::error_code error;
    fs::create_directories(MapDevicePath(kUserFolder), error);
    if (system::filesystem::CopyFile(path, copy)) path = copy;
  }
  LP_LOG(LP_LOG_INFO, "Opening legal document [%s] from [%s]", name.c_str(), path.c_str());
  const std::string shownTitle = title.rfind("@", 0) == 0 ? GetLangText(title.c_str()) : title;
  std::vector<std::string> arguments = {"/coreapp/bin/webpane.app",
                                        "webpane.app",
                                        "0",
                                        "file",
                                        "legal",
                                        "-titletoolbar",
                                        SerializationUtils::ToBase64(shownTitle),
                                        "-custom-title-font-bold",
                                        "1",
                                        "-custom-title-align",
                                        "left"};
  if (fullscreen) arguments.push_back("-fullscreen");
  if (forceOffline) arguments.push_back("-forceoffline");
  arguments.push_back(path);
  std::vector<char *> argv;
  for (const auto &argument : arguments) argv.push_back(strdup(argument.c_str()));
  NewTaskEx("/coreapp/bin/spawn_pane.app", "spawn_pane.app", static_cast<int>(argv.size()), argv.data(), 0, 1);
  for (char *argument : argv) free(argument);
  return true;
}

}  // namespace lumenpress::legal
