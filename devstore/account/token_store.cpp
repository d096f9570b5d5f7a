#include "token_store.h"

#include <openssl/rand.h>

#include "serialization_utils.h"
#include "unix_time.h"

namespace devstore {

std::string TokenStore::randomToken() {
  std::string bytes(24, '\0');
  if (RAND_bytes(reinterpret_cast<unsigned char *>(bytes.data()), static_cast<int>(bytes.size())) != 1) return {};
  return lumenpress::utilities::SerializationUtils::ToHex(bytes);
}

TokenStore::TokenStore(Database *db) : db_(db) {}

std::optional<TokenStore::Pair> TokenStore::issue(long long customerId) {
  Pair pair{randomToken(), randomToken()};
  if (pair.access.empty() || pair.refresh.empty()) return std::nullopt;
  const bool stored = db_->transaction([&] {
    return db_->run("INSERT INTO tokens(token, customer_id, kind, expires_at) VALUES (?, ?, 'access', ?)",
                    {pair.access, customerId, UnixTime::now() + kAccessLifetimeSeconds}) >= 0 &&
           db_->run("INSERT INTO tokens(token, customer_id, kind, expires_at) VALUES (?, ?, 'refresh', ?)",
                    {pair.refresh, customerId, UnixTime::now() + kRefreshLifetimeSeconds}) >= 0;
  });
  if (!stored) return std::nullopt;
  return pair;
}

std::optional<std::string> TokenStore::refresh(const std::string &access, const std::string &refresh) {
  const std::string fresh = randomToken();
  if (fresh.empty()) return std::nullopt;
  const bool issued = db_->transaction([&] {
    const auto rows = db_->query(
        "SELECT r.customer_id FROM tokens r JOIN tokens a ON a.customer_id = r.customer_id AND a.kind = 'access'"
        " WHERE r.token = ? AND r.kind = 'refresh' AND r.expires_at > ? AND a.token = ?",
        {refresh, UnixTime::now(), access});
    if (rows.empty()) return false;
    return db_->run("UPDATE tokens SET expires_at = MIN(expires_at, ?) WHERE token = ?", {UnixTime::now(), access}) >=
               0 &&
           db_->run("INSERT INTO tokens(token, customer_id, kind, expires_at) VALUES (?, ?, 'access', ?)",
                    {fresh, rows.front().integer("customer_id"), UnixTime::now() + kAccessLifetimeSeconds}) >= 0;
  });
  if (!issued) return std::nullopt;
  return fresh;
}

std::optional<long long> TokenStore::customerFor(const std::string &authorization) const {
  static const std::string prefix = "Bearer ";
  if (authorization.compare(0, prefix.size(), prefix) != 0) return std::nullopt;
  return customerOfAccessToken(authorization.substr(prefix.size()));
}

std::optional<long long> TokenStore::customerOfAccessToken(const std::string &token) const {
  const auto rows = db_->query("SELECT customer_id FROM tokens WHERE token = ? AND kind = 'access' AND expires_at > ?",
                               {token, UnixTime::now()});
  if (rows.empty()) return std::nullopt;
  return rows.front().integer("customer_id");
}

int TokenStore::expire(const std::string &token) {
  int expired = 0;
  db_->transaction([&] {
    const long long time = UnixTime::now();
    const auto before = db_->query("SELECT COUNT(*) AS n FROM tokens WHERE expires_at > ? AND (? = '' OR token = ?)",
                                   {time, token, token});
    expired = before.empty() ? 0 : static_cast<int>(before.front().integer("n"));
    return db_->run("UPDATE tokens SET expires_at = ? WHERE expires_at > ? AND (? = '' OR token = ?)",
                    {time, time, token, token}) >= 0;
  });
  return expired;
}

}  // namespace devstore
