#include "card_store.h"

#include "unix_time.h"

namespace devstore {

namespace {

CardStore::Card cardFrom(const SqlRow &row) {
  return {row.integer("id"), row.text("gateway"), row.text("number"), row.text("brand")};
}

}  // namespace

CardStore::CardStore(Database *db) : db_(db) {}

std::vector<CardStore::Card> CardStore::cards(long long customerId, const std::string &gateway) const {
  std::vector<Card> list;
  for (const auto &row : db_->query("SELECT * FROM cards WHERE customer_id = ? AND gateway = ?"
                                    " ORDER BY last_used_at DESC, id DESC",
                                    {customerId, gateway})) {
    list.push_back(cardFrom(row));
  }
  return list;
}

std::optional<CardStore::Card> CardStore::lastUsed(long long customerId) const {
  const auto rows =
      db_->query("SELECT * FROM cards WHERE customer_id = ? ORDER BY last_used_at DESC, id DESC LIMIT 1", {customerId});
  if (rows.empty()) return std::nullopt;
  return cardFrom(rows.front());
}

std::optional<CardStore::Card> CardStore::card(long long customerId, const std::string &gateway, long long id) const {
  const auto rows =
      db_->query("SELECT * FROM cards WHERE id = ? AND customer_id = ? AND gateway = ?", {id, customerId, gateway});
  if (rows.empty()) return std::nullopt;
  return cardFrom(rows.front());
}

bool CardStore::remove(long long customerId, const std::string &gateway, long long id) {
  if (!card(customerId, gateway, id)) return false;
  return db_->run("DELETE FROM cards WHERE id = ?", {id}) >= 0;
}

long long CardStore::remember(long long customerId, const std::string &gateway, const std::string &number) {
  const std::string masked = mask(number);
  const auto known = db_->query("SELECT id FROM cards WHERE customer_id = ? AND gateway = ? AND number = ?",
                                {customerId, gateway, masked});
  if (!known.empty()) {
    markUsed(known.front().integer("id"));
    return known.front().integer("id");
  }
  return db_->run("INSERT INTO cards(customer_id, gateway, number, brand, last_used_at) VALUES (?, ?, ?, ?, ?)",
                  {customerId, gateway, masked, brand(number), UnixTime::now()});
}

void CardStore::markUsed(long long id) {
  db_->run("UPDATE cards SET last_used_at = ? WHERE id = ?", {UnixTime::now(), id});
}

std::string CardStore::mask(const std::string &number) {
  if (number.size() < 10) return std::string(number.size(), '*');
  return number.substr(0, 6) + std::string(number.size() - 10, '*') + number.substr(number.size() - 4);
}

std::string CardStore::brand(const std::string &number) {
  if (number.empty()) return "CARD";
  if (number[0] == '4') return "VISA";
  if (number[0] == '5' || number[0] == '2') return "MASTERCARD";
  if (number.compare(0, 2, "34") == 0 || number.compare(0, 2, "37") == 0) return "AMEX";
  return "CARD";
}

}  // namespace devstore
