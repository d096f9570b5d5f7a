#include "service_token_routes.h"

#include "json_text.h"
#include "unix_time.h"

namespace devstore {

namespace {

// The store account's own pair first; the side services follow.
const char *const kServices[] = {"sac", "shelfnote", "s2lp", "lpcloud"};

Json::Value token(const TokenStore::Pair &pair, const std::string &login) {
  Json::Value value;
  value["access_token"] = pair.access;
  value["refresh_token"] = pair.refresh;
  value["login"] = login;
  value["status"] = "active";
  return value;
}

}  // namespace

ServiceTokenRoutes::ServiceTokenRoutes(Database *db, TokenStore *tokens) : db_(db), tokens_(tokens) {}

void ServiceTokenRoutes::install(httplib::Server *server) {
  server->Post(std::string(kPrefix) + "tokens", [this](const httplib::Request &request, httplib::Response &response) {
    tokens(request.body).sendTo(response);
  });
}

RestAnswer ServiceTokenRoutes::tokens(const std::string &body) {
  Json::Value request;
  if (!JsonText::parse(body, &request) || !request.isObject() || !request["access_token"].isString() ||
      !request["refresh_token"].isString()) {
    return RestAnswer::error(400, "access_token and refresh_token are needed");
  }
  const std::string access = request["access_token"].asString();
  const auto customer = customerOfPair(access, request["refresh_token"].asString());
  if (!customer) return RestAnswer::error(401, "the store's tokens are unknown or expired");
  const auto email = db_->query("SELECT email FROM customers WHERE id = ?", {*customer});
  const std::string login = email.empty() ? std::string() : email.front().text("email");
  Json::Value answer(Json::objectValue);
  answer["lumenpress"] = token({access, request["refresh_token"].asString()}, login);
  for (const char *service : kServices) {
    const auto pair = servicePair(*customer, service);
    if (!pair) return RestAnswer::error(500, "no token could be made");
    answer[service] = token(*pair, login);
  }
  return RestAnswer::json(answer);
}

std::optional<long long> ServiceTokenRoutes::customerOfPair(const std::string &access,
                                                            const std::string &refresh) const {
  const auto rows = db_->query(
      "SELECT a.customer_id FROM tokens a JOIN tokens r ON r.customer_id = a.customer_id AND r.kind = 'refresh'"
      " WHERE a.token = ? AND a.kind = 'access' AND a.expires_at > ? AND r.token = ? AND r.expires_at > ?",
      {access, UnixTime::now(), refresh, UnixTime::now()});
  if (rows.empty()) return std::nullopt;
  return rows.front().integer("customer_id");
}

std::optional<TokenStore::Pair> ServiceTokenRoutes::servicePair(long long customerId, const std::string &service) {
  const char *const find =
      "SELECT access_token, refresh_token FROM service_tokens WHERE customer_id = ? AND service = ?";
  std::optional<TokenStore::Pair> pair;
  db_->transaction([&] {
    auto rows = db_->query(find, {customerId, service});
    if (rows.empty()) {
      const std::string fresh_access = TokenStore::randomToken();
      const std::string fresh_refresh = TokenStore::randomToken();
      if (fresh_access.empty() || fresh_refresh.empty()) return false;
      if (db_->run("INSERT INTO service_tokens(customer_id, service, access_token, refresh_token, issued_at)"
                   " VALUES (?, ?, ?, ?, ?)",
                   {customerId, service, fresh_access, fresh_refresh, UnixTime::now()}) < 0) {
        return false;
      }
      rows = db_->query(find, {customerId, service});
    }
    if (rows.empty()) return false;
    pair = TokenStore::Pair{rows.front().text("access_token"), rows.front().text("refresh_token")};
    return true;
  });
  return pair;
}

}  // namespace devstore
