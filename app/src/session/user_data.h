// Who is signed in: the one REST client, the user's record and all long account work. Calls
// run on the global pool; their results come back to the main thread through handleFinished.
#ifndef LUMENPRESS_APP_USER_DATA_H
#define LUMENPRESS_APP_USER_DATA_H

#include <QFutureWatcher>
#include <QObject>
#include <QString>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "bookstore_api.h"
#include "single_auth.h"

class UserData : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString display_role READ getCurrentDisplayType WRITE setCurrentDisplayType NOTIFY displayRoleChanged)
  Q_PROPERTY(bool userExist READ userExist CONSTANT)
  Q_PROPERTY(StoreRunMode runMode READ runMode WRITE setRunMode NOTIFY runModeChanged)
  Q_PROPERTY(bool exitAfterLogin READ exitAfterLogin WRITE setExitAfterLogin NOTIFY exitAfterLoginChanged)
  Q_PROPERTY(bool setupWizardMode READ setupWizardMode WRITE setSetupWizardMode NOTIFY setupWizardModeChanged)
  Q_PROPERTY(bool setupWizardNoSkip READ setupWizardNoSkip WRITE setSetupWizardNoSkip NOTIFY setupWizardNoSkipChanged)

public:
  enum BookStatus { Buy = 0, ProcessPayment, WaitLink, Download, Downloading, Fullfilling, Open, None };
  Q_ENUM(BookStatus)
  enum PaymentError {
    Complete = 0,
    Cancel,
    Pending,
    NoError,
    AuthNeeded,
    ServerError,
    Fail,
    RefreshFailed,
    NetworkError,
    OutOfStock
  };
  Q_ENUM(PaymentError)
  enum StoreRunMode { kRunStoreMode = 0, kLoginMode, kRegisterMode, kSearchMode };
  Q_ENUM(StoreRunMode)

  static UserData *instance();

  bool userExist() const { return user_exist_; }
  StoreRunMode runMode() const { return run_mode_; }
  void setRunMode(StoreRunMode mode);
  bool exitAfterLogin() const { return exit_after_login_; }
  void setExitAfterLogin(bool value);
  bool setupWizardMode() const { return setup_wizard_mode_; }
  void setSetupWizardMode(bool value);
  bool setupWizardNoSkip() const { return setup_wizard_no_skip_; }
  void setSetupWizardNoSkip(bool value);

  // The REST base follows the chosen store.
  void setApiBaseUrl(const std::string &url);
  const std::vector<int> &legalServices() const { return legal_services_; }

signals:
  void emailResolved(bool success2, int err);
  void createAccountFinished(bool success1);
  void loginFinished(bool success);
  void recoverFinished(bool success);
  void userInfoLoaded();
  void displayRoleChanged();
  void authNeeded();
  void errorOccured();
  void loginFinishError(int error_id);
  void accessTokenChanged();
  void accessTokenChangedMainThread();
  void paymentMethodsLoaded();
  void runModeChanged(StoreRunMode runMode);
  void exitAfterLoginChanged(bool);
  void setupWizardModeChanged(bool);
  void setupWizardNoSkipChanged(bool);
  void cloudActivated();
  void forceLogOut();
  void errorDuringApiCall(int err, int code);

public slots:
  void resolveEmail(QString email);
  void createAccount(QString email, QString name, QString surname, QString password);
  void setWantNewsLetter(bool value);
  void login(QString email, QString password);
  void recoverPassword(QString email);
  void handleNeedToRefreshToken();
  void handleFinished();
  QString getUserEmail();
  bool isLoggedIn();
  void logout();
  void handleAccessTokenChanged();
  BookstoreApi::UserInfo userInfo();
  std::string getAccessToken();
  void requestPaymentMethods();
  std::vector<BookstoreApi::PaymentMethodInfo> getPaymentMethods();
  void closeApp(bool fast_close);
  void previousWizardStep();
  void skipWizardStep();
  QString getCurrentDisplayType();
  void setCurrentDisplayType(QString display_type);
  void openSettings();
  // Whether the documents of the cloud (service_name non-zero) or of the store are agreed to.
  bool checkLegalDocument(int service_name);
  void acceptPendingLegalDocuments();
  bool preagreedLegalDocumentsForBookstore();

private:
  using UserInfoResult = std::pair<BookstoreApi::UserInfo, BookstoreApi::ApiError>;
  using EmailResult = std::pair<bool, BookstoreApi::ApiError>;
  using PaymentMethodsResult = std::pair<std::vector<BookstoreApi::PaymentMethodInfo>, BookstoreApi::ApiError>;

  UserData();

  // False when there is no connection and the device could not make one; the store is then closing.
  bool ensureNetwork();
  void loadUserRelatedData();
  void startTokenWorker();
  void handleLogin(const BookstoreApi::LoginInfo &info);
  void handleUserInfo(const UserInfoResult &result);
  void handleTokens(const lumenpress::utilities::SingleAuth::TokenMap &tokens);
  void saveSacTokens(const lumenpress::utilities::SingleAuth::Token &sac);
  void handleEmailResolved(const EmailResult &result);
  void handlePaymentMethods(const PaymentMethodsResult &result);
  void readStoredUser();

  BookstoreApi api_;
  QFutureWatcher<BookstoreApi::LoginInfo> login_watcher_;
  QFutureWatcher<UserInfoResult> user_info_watcher_;
  QFutureWatcher<lumenpress::utilities::SingleAuth::TokenMap> tokens_watcher_;
  QFutureWatcher<EmailResult> email_watcher_;
  QFutureWatcher<BookstoreApi::ApiError> create_account_watcher_;
  QFutureWatcher<PaymentMethodsResult> payment_methods_watcher_;
  std::string email_;
  BookstoreApi::UserInfo user_info_;
  std::vector<BookstoreApi::PaymentMethodInfo> payment_methods_;
  std::map<std::string, lumenpress::utilities::SingleAuth::Token> service_tokens_;
  QString display_type_ = QStringLiteral("grid");
  bool user_exist_ = false;
  bool want_newsletter_ = false;
  // The login worker gets copies of both, so only the main thread touches them.
  bool newsletter_pending_ = false;
  bool token_refresh_running_ = false;
  std::vector<int> legal_services_;
  StoreRunMode run_mode_ = kRunStoreMode;
  bool exit_after_login_ = false;
  bool setup_wizard_mode_ = false;
  bool setup_wizard_no_skip_ = false;
};

#endif
