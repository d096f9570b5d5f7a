// The account service under "/account/": the device's single sign-on. Given the store's token
// pair of a signed-in customer it answers a token pair per device service, the same pair for
// the same customer every time, so that services see one account.
#ifndef DEVSTORE_SERVICE_TOKEN_ROUTES_H
#define DEVSTORE_SERVICE_TOKEN_ROUTES_H

#include <httplib.h>
#include <json/json.h>

#include <optional>
#include <string>

#include "database.h"
#include "rest_answer.h"
#include "token_store.h"

namespace devstore {

class ServiceTokenRoutes {
public:
  static constexpr const char *kPrefix = "/account/";

  ServiceTokenRoutes(Database *db, TokenStore *tokens);

  void install(httplib::Server *server);
  // POST /account/tokens {access_token, refresh_token}.
  RestAnswer tokens(const std::string &body);

private:
  std::optional<long long> customerOfPair(const std::string &access, const std::string &refresh) const;
  // The customer's pair for the service, made the first time it is asked for.
  std::optional<TokenStore::Pair> servicePair(long long customerId, const std::string &service);

  Database *db_;
  TokenStore *tokens_;
};

}  // namespace devstore

#endif
