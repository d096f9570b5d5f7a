#include "legal_consent_check.h"

#include <QCoreApplication>

#include <unistd.h>

#include <mutex>
#include <thread>
#include <vector>

#include "account_manager.h"
#include "legal_checker.h"
#include "legal_helper.h"
#include "lp_log.h"

namespace {

// Held by the thread while it runs. At the application's end a finished thread's lock is taken
// and kept, so its work is ordered before the process's own teardown and a thread not yet begun
// never begins; a thread still running is not waited for.
std::mutex &running() {
  static std::mutex mutex;
  return mutex;
}

void claimAtEnd() {
  running().try_lock();
}

}  // namespace

void LegalConsentCheck::start(UserData::StoreRunMode mode) {
  static std::once_flag registered;
  std::call_once(registered, [] { qAddPostRoutine(claimAtEnd); });
  std::thread([mode] {
    const std::lock_guard<std::mutex> lock(running());
    run(mode);
  }).detach();
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
