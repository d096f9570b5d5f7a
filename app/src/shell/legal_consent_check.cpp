#include "legal_consent_check.h"

#include <QCoreApplication>

#include <unistd.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

#include "account_manager.h"
#include "legal_checker.h"
#include "legal_helper.h"
#include "lp_log.h"

namespace {

// The thread holds `running` while it works. At the application's end `ending` is set and the
// lock taken and kept: a thread at work finishes its step first, skips what is left, and its work
// is ordered before the process's own teardown; a thread not yet begun never begins.
struct ThreadState {
  std::mutex running;
  std::atomic<bool> ending{false};
};

ThreadState &state() {
  static ThreadState shared;
  return shared;
}

void claimAtEnd() {
  state().ending = true;
  state().running.lock();
}

}  // namespace

void LegalConsentCheck::start(UserData::StoreRunMode mode) {
  static std::once_flag registered;
  std::call_once(registered, [] { qAddPostRoutine(claimAtEnd); });
  std::thread([mode] {
    const std::lock_guard<std::mutex> lock(state().running);
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
    // Nobody is asked by a store that is closing.
    if (state().ending) return true;
    LegalChecker::runLegalUIAndWait(services, false, "", "", 0);
    accepted = LegalChecker::isLegalAccepted(services);
  }
  if (accepted) return true;
  LP_LOG(LP_LOG_WARNING, "The legal documents were refused");
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [] { QCoreApplication::exit(-1); }, Qt::QueuedConnection);
  return false;
}
