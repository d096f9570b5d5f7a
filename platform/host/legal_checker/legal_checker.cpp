// The dialog's answer is "accept" unless LUMENPRESS_LEGAL_ANSWER, or the first word of
// "legal_answer" in the host's folder under the device root, says "refuse". Every answer is
// journalled with the services it was given for.
#include "legal_checker.h"

#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <fstream>

#include "device_tree.h"
#include "framework/lpdb_tags.h"
#include "legal_data.h"
#include "legal_helper.h"
#include "lp_log.h"
#include "services_helper.h"
#include "task_journal.h"

using lumenpress::legal::LegalAgreement;
using lumenpress::legal::LegalData;
using lumenpress::legal::LegalDocument;
using lumenpress::legal::LegalHelper;
using lumenpress::legal::ServicesHelper;
using lumenpress::platform::DeviceTree;
using lumenpress::platform::TaskJournal;

namespace {

// While "legal_wait" lies in the host's folder the owner is still reading: the dialog stays up,
// a minute at the most.
void waitForOwner() {
  const std::string reading = DeviceTree::instance().hostPath("legal_wait");
  for (int i = 0; i < 600 && ::access(reading.c_str(), F_OK) == 0; ++i) usleep(100000);
}

bool ownerAccepts() {
  waitForOwner();
  if (const char *answer = std::getenv("LUMENPRESS_LEGAL_ANSWER"); answer && *answer)
    return std::string(answer) != "refuse";
  std::ifstream file(DeviceTree::instance().hostPath("legal_answer"));
  std::string word;
  return !(file >> word) || word != "refuse";
}

Json::Value serviceList(const std::vector<LegalChecker::ServiceType> &services) {
  Json::Value list(Json::arrayValue);
  for (const auto service : services) list.append(static_cast<int>(service));
  return list;
}

// Consent to a service's documents given before anyone signed in waits, tagged, for the account
// it will be reported with; the device's own documents need no account.
void tagPendingConsent(const std::vector<LegalChecker::ServiceType> &services) {
  LPDBTags tags;
  tags.setMode(LPDBTags::kDeviceTags);
  for (const auto service : services) {
    if (service != LegalChecker::kDevice) tags.addTag2(ServicesHelper::pendingConsentTag(service));
  }
}

bool answerDialog(const std::vector<LegalChecker::ServiceType> &services, const std::string &email) {
  const bool accepted = ownerAccepts();
  Json::Value entry;
  entry["services"] = serviceList(services);
  entry["answer"] = accepted ? "accept" : "refuse";
  TaskJournal::append("LegalChecker", entry);
  LP_LOG(LP_LOG_INFO, "Legal dialog answered [%s]", accepted ? "accept" : "refuse");
  if (!accepted) return false;
  std::vector<LegalDocument> documents;
  LegalData store;
  store.getDocumentsForServices(documents, ServicesHelper::serviceNames(services));
  for (const LegalDocument &document : documents) {
    if (document.agreement.status != LegalAgreement::kNotAgreed) continue;
    store.setAgreement(document.name, document.version, email, "", LegalAgreement::kAgreed,
                       static_cast<std::int64_t>(std::time(nullptr)));
  }
  if (email.empty()) tagPendingConsent(services);
  return LegalChecker::isLegalAccepted(services);
}

}  // namespace

bool LegalChecker::isLegalAccepted(const std::vector<ServiceType> &services) {
  return LegalHelper().isAccepted(services);
}

bool LegalChecker::runLegalUIAndWait(const std::vector<ServiceType> &services, bool, const std::string &,
                                     const std::string &email, int) {
  return answerDialog(services, email);
}

bool LegalChecker::runLegalUIForServiceAndWait(const std::vector<ServiceType> &services, const std::string &,
                                               const std::string &email, int) {
  return answerDialog(services, email);
}
