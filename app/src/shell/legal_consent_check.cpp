#include "legal_consent_check.h"

#include <QCoreApplication>

#include <unistd.h>

#include <thread>
#include <vector>

#include "account_manager.h"
#include "legal_checker.h"
#include "legal_helper.h"
#include "lp_log.h"

void LegalConsentCheck::start(UserData::StoreRunMode mode) {
  std::thread([mode] { run(mode); }).detach();
}

bool LegalConsentCheck::run(UserData::StoreRunMode mode) {
  lumenpress::utilities::AccountManager accounts;
  if (!lumenpress::legal::LegalHelper::runConsentRefresh()) LP_LOG(LP_LOG_WARNING, "consent_refresh did not finish");
  std::vector<LegalChecker::ServiceType> services = {LegalChecker::kDevice};
  if (mode == UserData::kRunStoreMode && accounts.isLoggedIn(1))
    services = {LegalChecker::kBookstore, LegalChecker::kCloud};
  bool accepted = LegalChecker::isLegalAccepted(services);
  if (!accepted) {
    usleep(1000000);
    LegalChecker::runLegalUIAndWait(services, false, "", "", 0);
    accepted = LegalChecker::isLegalAccepted(services);
  }
  if (accepted) return true;
  LP_LOG(LP_LOG_WARNING, "The legal documents were refused");
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [] { QCoreApplication::exit(-1); }, Qt::QueuedConnection);
  return false;
}
