// Accounts: whether an e-mail has one, new accounts, sign-in with tokens and their refresh,
// the customer's record, newsletter consent, and the list of stores.
#ifndef DEVSTORE_ACCOUNT_SERVICE_H
#define DEVSTORE_ACCOUNT_SERVICE_H

#include "catalogue.h"
#include "database.h"
#include "rest_answer.h"
#include "rest_call.h"
#include "token_store.h"

namespace devstore {

class AccountService {
public:
  // Codes of a refused sign-in, in the "code" member of the answer.
  static constexpr int kWrongCredentials = 1;
  static constexpr int kLocked = 2;
  // Wrong passwords within the window that lock an account until the window has passed.
  static constexpr int kFailuresToLock = 5;
  static constexpr int kLockWindowSeconds = 15 * 60;

  AccountService(Database *db, const Catalogue *catalogue, TokenStore *tokens);

  RestAnswer checkUser(const RestCall &call) const;
  RestAnswer stores(const RestCall &call) const;
  RestAnswer createAccount(const RestCall &call);
  RestAnswer setSubscription(const RestCall &call);
  RestAnswer login(const RestCall &call);
  RestAnswer refresh(const RestCall &call);
  RestAnswer me(const RestCall &call) const;

  static bool wellFormedEmail(const std::string &email);

private:
  bool locked(long long customerId) const;
  void countFailure(long long customerId);

  Database *db_;
  const Catalogue *catalogue_;
  TokenStore *tokens_;
};

}  // namespace devstore

#endif
