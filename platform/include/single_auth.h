// The device's single sign-on: tokens of the store's account for the device's other services.
#ifndef LUMENPRESS_SINGLE_AUTH_H
#define LUMENPRESS_SINGLE_AUTH_H

#include <map>
#include <string>

namespace lumenpress::utilities {

class SingleAuth {
public:
  class Token {
  public:
    std::string access_token;
    std::string refresh_token;
    std::string login;
    // "pending" while the service has not issued the token yet.
    std::string status;
  };
  // By service name: "sac", "shelfnote", "s2lp", "lpcloud", "lumenpress". Empty on failure.
  using TokenMap = std::map<std::string, Token>;

  // All calls block; callers run them on workers.
  TokenMap getTokens(const std::string &access_token, const std::string &refresh_token);
  TokenMap getAppTokens(const std::string &sac_access_token, const std::string &service);
  TokenMap getTokensByStoreToken(const std::string &store_access_token);
  // The code a phone scans to sign the device in; empty on failure.
  std::string getAuthQrCode();
};

}  // namespace lumenpress::utilities

#endif
