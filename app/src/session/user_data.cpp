#include "user_data.h"

#include <QCoreApplication>
#include <QFutureInterface>
#include <QTimer>
#include <QtConcurrent>

#include <cstdlib>

#include "account_manager.h"
#include "cfg_wrapper.h"
#include "feed_provider.h"
#include "framework/lp_singleton.h"
#include "framework/lpdb_tags.h"
#include "framework/notifier.h"
#include "legal_checker.h"
#include "legal_helper.h"
#include "lp_log.h"
#include "panelkit.h"
#include "services_helper.h"

using lumenpress::legal::LegalHelper;
using lumenpress::legal::ServicesHelper;
using lumenpress::utilities::CfgSecret;
using lumenpress::utilities::CfgWrapper;
using lumenpress::utilities::SingleAuth;

namespace {

constexpr char kBookstoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";
constexpr char kGlobalConfig[] = "/mnt/ext1/system/config/global.cfg";
constexpr int kStoreNotificationApp = 6;
constexpr int kRecoverDelayMs = 4000;

// A handled watcher gets a future that is started, finished and canceled, so that the next
// finished() of another watcher does not handle the same result again.
template <typename T>
void markHandled(QFutureWatcher<T> &watcher) {
  QFutureInterface<T> done(QFutureInterfaceBase::State(QFutureInterfaceBase::Started | QFutureInterfaceBase::Finished |
                                                       QFutureInterfaceBase::Canceled));
  watcher.setFuture(done.future());
}

template <typename T>
bool unhandled(const QFutureWatcher<T> &watcher) {
  return watcher.isFinished() && !watcher.isCanceled();
}

}  // namespace

UserData *UserData::instance() {
  static UserData *const user = new UserData;
  return user;
}

UserData::UserData() : api_([this] { emit accessTokenChanged(); }) {
  connect(&login_watcher_, &QFutureWatcherBase::finished, this, &UserData::handleFinished);
  connect(&user_info_watcher_, &QFutureWatcherBase::finished, this, &UserData::handleFinished);
  connect(&tokens_watcher_, &QFutureWatcherBase::finished, this, &UserData::handleFinished);
  connect(&email_watcher_, &QFutureWatcherBase::finished, this, &UserData::handleFinished);
  connect(&create_account_watcher_, &QFutureWatcherBase::finished, this, &UserData::handleFinished);
  connect(&payment_methods_watcher_, &QFutureWatcherBase::finished, this, &UserData::handleFinished);
  // The token callback fires on whichever thread refreshed; the screens hear of it on theirs.
  connect(this, &UserData::accessTokenChanged, this, &UserData::handleAccessTokenChanged, Qt::QueuedConnection);
  connect(this, &UserData::loginFinished, this, [this](bool success) {
    if (success) acceptPendingLegalDocuments();
  });
  connect(this, &UserData::userInfoLoaded, this, [this] { acceptPendingLegalDocuments(); });
  connect(this, &UserData::cloudActivated, this, [this] { acceptPendingLegalDocuments(); });
  api_.setErrorCallback([this](int err, int code) { emit errorDuringApiCall(err, code); });
  readStoredUser();
}

void UserData::readStoredUser() {
  const CfgWrapper config(kBookstoreConfig, 0);
  email_ = config.read<std::string>("email", "");
  user_info_.email = email_;
  const QString stored = QString::fromStdString(config.read<std::string>("display_type", "grid"));
  if (!stored.isEmpty()) display_type_ = stored;
}

void UserData::setRunMode(StoreRunMode mode) {
  if (run_mode_ == mode) return;
  run_mode_ = mode;
  emit runModeChanged(mode);
}

void UserData::setExitAfterLogin(bool value) {
  if (exit_after_login_ == value) return;
  exit_after_login_ = value;
  emit exitAfterLoginChanged(value);
}

void UserData::setSetupWizardMode(bool value) {
  if (setup_wizard_mode_ == value) return;
  setup_wizard_mode_ = value;
  emit setupWizardModeChanged(value);
}

void UserData::setSetupWizardNoSkip(bool value) {
  if (setup_wizard_no_skip_ == value) return;
  setup_wizard_no_skip_ = value;
  emit setupWizardNoSkipChanged(value);
}

void UserData::setApiBaseUrl(const std::string &url) {
  api_.setBaseUrl(url);
}

bool UserData::ensureNetwork() {
  if ((QueryNetwork() & 0xf00) != 0) return true;
  if (NetConnect(nullptr) == 0) return true;
  LP_LOG(LP_LOG_ERROR, "no network and none could be made: closing");
  closeApp(false);
  return false;
}

void UserData::resolveEmail(QString email) {
  if (!ensureNetwork()) return;
  email_ = email.toStdString();
  user_info_.email = email_;
  email_watcher_.setFuture(QtConcurrent::run(QThreadPool::globalInstance(), [this, address = email_] {
    bool exists = false;
    const BookstoreApi::ApiError err = api_.checkUser(address, &exists);
    return EmailResult(exists, err);
  }));
}

void UserData::createAccount(QString email, QString name, QString surname, QString password) {
  if (!ensureNetwork()) return;
  create_account_watcher_.setFuture(QtConcurrent::run(
      QThreadPool::globalInstance(),
      [this, address = email.toStdString(), first = name.toStdString(), last = surname.toStdString(),
       secret = password.toStdString()] { return api_.createAccount(address, first, last, secret); }));
}

void UserData::setWantNewsLetter(bool value) {
  want_newsletter_ = value;
  newsletter_pending_ = true;
}

void UserData::login(QString email, QString password) {
  if (!ensureNetwork()) return;
  email_ = email.toStdString();
  user_info_.email = email_;
  const bool subscribe = newsletter_pending_;
  const int marketing = want_newsletter_ ? 1 : 0;
  login_watcher_.setFuture(
      QtConcurrent::run(QThreadPool::globalInstance(),
                        [this, address = email.toStdString(), secret = password.toStdString(), subscribe, marketing] {
                          BookstoreApi::LoginInfo info = api_.auth(address, secret);
                          if (info.code == 0 && subscribe) api_.setSubscription(marketing);
                          return info;
                        }));
}

void UserData::recoverPassword(QString) {
  QTimer::singleShot(kRecoverDelayMs, Qt::CoarseTimer, this, [this] { emit recoverFinished(true); });
}

// On the pool, so that the screens do not freeze for the request; the flag is only touched here.
void UserData::handleNeedToRefreshToken() {
  if (token_refresh_running_) return;
  token_refresh_running_ = true;
  QtConcurrent::run(QThreadPool::globalInstance(), [this, token = api_.currentAccessToken()] {
    api_.refreshToken(token);
    QMetaObject::invokeMethod(
        this, [this] { token_refresh_running_ = false; }, Qt::QueuedConnection);
  });
}

// Knows not which watcher fired: handles every one whose result is new, in a fixed order.
void UserData::handleFinished() {
  if (unhandled(login_watcher_)) {
    const BookstoreApi::LoginInfo info = login_watcher_.result();
    markHandled(login_watcher_);
    handleLogin(info);
  }
  if (unhandled(user_info_watcher_)) {
    const UserInfoResult result = user_info_watcher_.result();
    markHandled(user_info_watcher_);
    handleUserInfo(result);
  }
  if (unhandled(tokens_watcher_)) {
    const SingleAuth::TokenMap tokens = tokens_watcher_.result();
    markHandled(tokens_watcher_);
    handleTokens(tokens);
  }
  if (unhandled(email_watcher_)) {
    const EmailResult result = email_watcher_.result();
    markHandled(email_watcher_);
    handleEmailResolved(result);
  }
  if (unhandled(create_account_watcher_)) {
    const BookstoreApi::ApiError err = create_account_watcher_.result();
    markHandled(create_account_watcher_);
    emit createAccountFinished(err == BookstoreApi::kNoError);
  }
  if (unhandled(payment_methods_watcher_)) {
    const PaymentMethodsResult result = payment_methods_watcher_.result();
    markHandled(payment_methods_watcher_);
    handlePaymentMethods(result);
  }
}

void UserData::handleLogin(const BookstoreApi::LoginInfo &info) {
  if (api_.hasAccessToken()) {
    newsletter_pending_ = false;
    startTokenWorker();
    return;
  }
  emit loginFinished(false);
  emit loginFinishError(info.code);
}

void UserData::startTokenWorker() {
  tokens_watcher_.setFuture(QtConcurrent::run(
      QThreadPool::globalInstance(), [access = api_.currentAccessToken(), refresh = api_.currentRefreshToken()] {
        return SingleAuth().getTokens(access, refresh);
      }));
}

void UserData::handleTokens(const SingleAuth::TokenMap &tokens) {
  service_tokens_ = tokens;
  const auto sac = tokens.find("sac");
  if (sac == tokens.end()) {
    LP_LOG(LP_LOG_WARNING, "the account service gave no store token: signed out");
    api_.clearTokens();
    emit loginFinished(isLoggedIn());
    return;
  }
  saveSacTokens(sac->second);
  if (GetCustomizedPartner() == 0) legal_services_ = {2, 1};
  lumenpress::Notifier::Remove(kStoreNotificationApp);
  CfgWrapper global(kGlobalConfig, 1);
  global.remove("tessel_login");
  global.remove("tessel_pass");
  global.saveAndClose();
  loadUserRelatedData();
}

// Another user must not inherit the layout: its reset to "grid" is what stays on disk.
void UserData::saveSacTokens(const SingleAuth::Token &sac) {
  CfgWrapper config(kBookstoreConfig, 1);
  config.write<CfgSecret>("sac_access_token", sac.access_token);
  config.write<CfgSecret>("sac_refresh_token", sac.refresh_token);
  const bool another_user = config.read<std::string>("email", "") != user_info_.email;
  if (another_user) {
    display_type_ = QStringLiteral("grid");
    config.write<std::string>("display_type", "grid");
  }
  config.write<std::string>("email", user_info_.email);
  config.save();
  if (another_user) emit displayRoleChanged();
}

void UserData::loadUserRelatedData() {
  if (!ensureNetwork()) return;
  user_info_watcher_.setFuture(QtConcurrent::run(QThreadPool::globalInstance(), [this] {
    BookstoreApi::UserInfo info;
    const BookstoreApi::ApiError err = api_.getUserInfo(&info);
    return UserInfoResult(info, err);
  }));
  requestPaymentMethods();
}

// The session is the token, not the record: a failed record still reports the login as standing.
void UserData::handleUserInfo(const UserInfoResult &result) {
  if (result.second == BookstoreApi::kNoError) {
    user_info_ = result.first;
    email_ = user_info_.email;
    CfgWrapper config(kBookstoreConfig, 1);
    config.write<std::string>("email", email_);
    config.save();
    emit userInfoLoaded();
  } else if (result.second == BookstoreApi::kNotAuthorized) {
    emit authNeeded();
  } else {
    emit errorOccured();
  }
  emit loginFinished(isLoggedIn());
}

void UserData::handleEmailResolved(const EmailResult &result) {
  user_exist_ = result.first && result.second == BookstoreApi::kNoError;
  emit emailResolved(user_exist_, result.second);
}

void UserData::requestPaymentMethods() {
  if (!ensureNetwork()) return;
  payment_methods_watcher_.setFuture(QtConcurrent::run(QThreadPool::globalInstance(), [this] {
    std::vector<BookstoreApi::PaymentMethodInfo> methods;
    const BookstoreApi::ApiError err = api_.getPaymentMethods(&methods);
    return PaymentMethodsResult(methods, err);
  }));
}

void UserData::handlePaymentMethods(const PaymentMethodsResult &result) {
  payment_methods_ = result.first;
  emit paymentMethodsLoaded();
}

std::vector<BookstoreApi::PaymentMethodInfo> UserData::getPaymentMethods() {
  return payment_methods_;
}

QString UserData::getUserEmail() {
  return QString::fromStdString(email_);
}

bool UserData::isLoggedIn() {
  return api_.hasAccessToken();
}

std::string UserData::getAccessToken() {
  return api_.currentAccessToken();
}

BookstoreApi::UserInfo UserData::userInfo() {
  return user_info_;
}

void UserData::handleAccessTokenChanged() {
  emit accessTokenChangedMainThread();
}

// Keys other than the layout stay: the store manager removes what it owns on forceLogOut.
void UserData::logout() {
  email_.clear();
  user_info_ = BookstoreApi::UserInfo();
  api_.clearTokens();
  setCurrentDisplayType(QStringLiteral("grid"));
  FeedProvider::Instance().dataManager().ClearCredentials();
  lumenpress::utilities::AccountManager().logOut(1);
  emit loginFinished(false);
  emit forceLogOut();
}

QString UserData::getCurrentDisplayType() {
  return display_type_;
}

void UserData::setCurrentDisplayType(QString display_type) {
  display_type_ = display_type;
  CfgWrapper config(kBookstoreConfig, 1);
  config.write<std::string>("display_type", display_type.toStdString());
  config.saveAndClose();
  emit displayRoleChanged();
}

void UserData::openSettings() {
  const char *const argv[] = {"-o", "tessel_store"};
  OpenTask("/coreapp/bin/prefs_panel.app", 2, argv, 0);
}

void UserData::closeApp(bool fast_close) {
  if (fast_close) {
    const int task = GetCurrentTask();
    SetTaskParameters(task, "", "", nullptr, 0);
    int previous = 0;
    int subtask = 0;
    if (GetPreviousTaskInStack(&previous, &subtask) == 0 && previous >= 1) SetActiveTask(previous, subtask);
  }
  QCoreApplication::exit(0);
  std::exit(-1);
}

void UserData::previousWizardStep() {
  closeApp(false);
}

void UserData::skipWizardStep() {
  closeApp(false);
}

bool UserData::checkLegalDocument(int service_name) {
  return LegalHelper().isAccepted({service_name != 0 ? LegalChecker::kCloud : LegalChecker::kBookstore});
}

// The services the sign-in brought are agreed to and reported; nothing is left pending after.
void UserData::acceptPendingLegalDocuments() {
  if (!isLoggedIn() || legal_services_.empty()) return;
  std::vector<LegalChecker::ServiceType> services;
  for (const int service : legal_services_) services.push_back(static_cast<LegalChecker::ServiceType>(service));
  LegalHelper().agreeWithAllDocumentsForServices(services, email_, true, "");
  LPDBTags &tags = LPSingleton<LPDBTags>::getInstance();
  tags.setMode(LPDBTags::kDeviceTags);
  for (const auto service : services) tags.removeTag2(ServicesHelper::pendingConsentTag(service));
  legal_services_.clear();
}

bool UserData::preagreedLegalDocumentsForBookstore() {
  if (!ensureNetwork()) return false;
  LegalHelper::runConsentRefresh();
  const std::vector<LegalChecker::ServiceType> services = {LegalChecker::kBookstore};
  LegalChecker::runLegalUIForServiceAndWait(services, "", email_, 0);
  return LegalHelper().isAccepted(services);
}
