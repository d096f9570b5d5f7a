// Bearer tokens of signed-in customers, kept in the database with their expiry.
#ifndef DEVSTORE_TOKEN_STORE_H
#define DEVSTORE_TOKEN_STORE_H

#include <optional>
#include <string>

#include "database.h"

namespace devstore {

class TokenStore {
public:
  static constexpr int kAccessLifetimeSeconds = 3600;
  static constexpr int kRefreshLifetimeSeconds = 30 * 24 * 3600;

  struct Pair {
    std::string access;
    std::string refresh;
  };

  explicit TokenStore(Database *db);

  // 48 hex digits from the system's random source; empty when it fails.
  static std::string randomToken();

  std::optional<Pair> issue(long long customerId);
  // A new access token for a refresh token in force, given with an access token of the same
  // customer; that one expires now. Nothing when either does not fit.
  std::optional<std::string> refresh(const std::string &access, const std::string &refresh);
  // The customer of an "Authorization: Bearer <token>" header with an access token in force.
  std::optional<long long> customerFor(const std::string &authorization) const;
  std::optional<long long> customerOfAccessToken(const std::string &token) const;
  // Makes one token, or every token when `token` is empty, expire now; the number expired.
  int expire(const std::string &token);

private:
  Database *db_;
};

}  // namespace devstore

#endif
