// The device's record of which services the owner is signed in to.
#ifndef LUMENPRESS_ACCOUNT_MANAGER_H
#define LUMENPRESS_ACCOUNT_MANAGER_H

#include "single_auth.h"

namespace lumenpress::utilities {

class AccountManager {
public:
  bool isLoggedIn(int service);
  void logOut(int service);
  void saveShelfnoteTokens(const SingleAuth::Token &token);
  void saveSend2LpTokens(const SingleAuth::Token &token);
};

}  // namespace lumenpress::utilities

#endif
