#include "account_service.h"

#include "password_hasher.h"
#include "seed_vocabulary.h"
#include "unix_time.h"

namespace devstore {

namespace {

constexpr size_t kShortestPassword = 6;

// The store's language by its own name, as the store picker shows it.
std::string languageName(const std::string &code) {
  for (const auto &language : vocabulary::languages()) {
    if (code == language.code) return language.own;
  }
  return code;
}

Json::Value customerJson(const SqlRow &row) {
  Json::Value customer(Json::objectValue);
  customer["id"] = static_cast<Json::Int64>(row.integer("id"));
  customer["email"] = row.text("email");
  customer["firstname"] = row.text("first_name");
  customer["lastname"] = row.text("last_name");
  return customer;
}

}  // namespace

AccountService::AccountService(Database *db, const Catalogue *catalogue, TokenStore *tokens)
    : db_(db), catalogue_(catalogue), tokens_(tokens) {}

bool AccountService::wellFormedEmail(const std::string &email) {
  const auto at = email.find('@');
  if (at == 0 || at == std::string::npos || email.find('@', at + 1) != std::string::npos) return false;
  // The domain needs a dot with something on either side of it.
  const auto dot = email.rfind('.');
  return dot != std::string::npos && dot > at + 1 && dot + 1 < email.size() &&
         email.find_first_of(" \t\r\n,;<>\"") == std::string::npos;
}

// A malformed address is answered with 200: the client looks for the message only there.
RestAnswer AccountService::checkUser(const RestCall &call) const {
  const auto email = call.text("email");
  if (!email) return RestAnswer::error(400, "give the \"email\"");
  if (!wellFormedEmail(*email)) return RestAnswer::error(200, "Email has a wrong format");
  return RestAnswer::boolean(!db_->query("SELECT id FROM customers WHERE email = ?", {*email}).empty());
}

RestAnswer AccountService::stores(const RestCall &call) const {
  Json::Value list(Json::arrayValue);
  for (const auto &store : catalogue_->stores()) {
    Json::Value item(Json::objectValue);
    item["url"] = call.origin + "/" + store.code + "/";
    item["language"] = languageName(store.language);
    item["langCode"] = store.code.substr(0, 2);
    item["status"] = "enable";
    list.append(item);
  }
  return RestAnswer::json(list);
}

RestAnswer AccountService::createAccount(const RestCall &call) {
  const Json::Value &customer = call.body["customer"];
  const auto email = customer.isObject() ? RestCall::textOf(customer["email"]) : std::nullopt;
  const auto first = customer.isObject() ? RestCall::textOf(customer["firstname"]) : std::nullopt;
  const auto last = customer.isObject() ? RestCall::textOf(customer["lastname"]) : std::nullopt;
  const auto password = call.text("password");
  if (!email || !first || !last || !password) {
    return RestAnswer::error(400, "give \"customer\" with \"email\", \"firstname\", \"lastname\", and \"password\"");
  }
  if (!wellFormedEmail(*email)) return RestAnswer::error(400, "Email has a wrong format");
  if (password->size() < kShortestPassword) return RestAnswer::error(400, "the password is too short");
  if (!db_->query("SELECT id FROM customers WHERE email = ?", {*email}).empty()) {
    return RestAnswer::error(400, "A customer with the same email address already exists");
  }
  const long long id =
      db_->run("INSERT INTO customers(email, password_hash, first_name, last_name) VALUES (?, ?, ?, ?)",
               {*email, PasswordHasher::hash(*password), *first, *last});
  if (id < 0) return RestAnswer::error(400, "A customer with the same email address already exists");
  std::fprintf(stderr, "devstore: new customer %lld <%s>\n", id, email->c_str());
  const auto rows = db_->query("SELECT * FROM customers WHERE id = ?", {id});
  return rows.empty() ? RestAnswer::error(500, "the customer could not be read")
                      : RestAnswer::json(customerJson(rows.front()));
}

RestAnswer AccountService::setSubscription(const RestCall &call) {
  const Json::Value &marketing = call.body["marketing"];
  if (!marketing.isInt() || (marketing.asInt() != 0 && marketing.asInt() != 1)) {
    return RestAnswer::error(400, "give \"marketing\" as 0 or 1");
  }
  const long long stored = db_->run(
      "INSERT INTO newsletter(customer_id, marketing, changed_at) VALUES (?, ?, ?)"
      " ON CONFLICT(customer_id) DO UPDATE SET marketing = excluded.marketing, changed_at = excluded.changed_at",
      {call.customer, static_cast<long long>(marketing.asInt()), UnixTime::now()});
  return stored < 0 ? RestAnswer::error(500, "the consent could not be stored") : RestAnswer::boolean(true);
}

RestAnswer AccountService::login(const RestCall &call) {
  const auto email = call.text("email");
  const auto password = call.text("password");
  if (!email || !password) return RestAnswer::error(400, "give \"email\" and \"password\"");
  const auto rows = db_->query("SELECT id, password_hash FROM customers WHERE email = ?", {*email});
  const char *refused = "The account sign-in was incorrect";
  if (rows.empty()) return RestAnswer::error(401, refused, kWrongCredentials);
  const long long id = rows.front().integer("id");
  if (locked(id)) return RestAnswer::error(401, "The account is locked for a while", kLocked);
  if (!PasswordHasher::verify(*password, rows.front().text("password_hash"))) {
    countFailure(id);
    return RestAnswer::error(401, refused, kWrongCredentials);
  }
  db_->run("DELETE FROM login_failures WHERE customer_id = ?", {id});
  const auto pair = tokens_->issue(id);
  if (!pair) return RestAnswer::error(500, "no token could be stored");
  Json::Value tokens(Json::objectValue);
  tokens["access_token"] = pair->access;
  tokens["refresh_token"] = pair->refresh;
  tokens["expires_in"] = TokenStore::kAccessLifetimeSeconds;
  return RestAnswer::json(tokens);
}

// Only the access token is renewed; the client keeps its refresh token.
RestAnswer AccountService::refresh(const RestCall &call) {
  const auto access = call.text("access_token");
  const auto refresh = call.text("refresh_token");
  if (!access || !refresh) return RestAnswer::error(400, "give \"access_token\" and \"refresh_token\"");
  const auto fresh = tokens_->refresh(*access, *refresh);
  if (!fresh) return RestAnswer::error(401, "the refresh token is unknown or has expired");
  return RestAnswer::string(*fresh);
}

RestAnswer AccountService::me(const RestCall &call) const {
  const auto rows = db_->query("SELECT * FROM customers WHERE id = ?", {call.customer});
  if (rows.empty()) return RestAnswer::error(404, "no such customer");
  return RestAnswer::json(customerJson(rows.front()));
}

bool AccountService::locked(long long customerId) const {
  const auto rows = db_->query("SELECT COUNT(*) AS n FROM login_failures WHERE customer_id = ? AND failed_at > ?",
                               {customerId, UnixTime::now() - kLockWindowSeconds});
  return !rows.empty() && rows.front().integer("n") >= kFailuresToLock;
}

void AccountService::countFailure(long long customerId) {
  db_->run("INSERT INTO login_failures(customer_id, failed_at) VALUES (?, ?)", {customerId, UnixTime::now()});
}

}  // namespace devstore
