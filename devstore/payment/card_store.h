// Cards the two gateways keep for a customer, so a later payment needs no card number. Only
// the masked number is kept.
#ifndef DEVSTORE_CARD_STORE_H
#define DEVSTORE_CARD_STORE_H

#include <optional>
#include <string>
#include <vector>

#include "database.h"

namespace devstore {

class CardStore {
public:
  static constexpr const char *kHgwcc = "hgwcc";
  static constexpr const char *kPayOnline = "payonline";

  struct Card {
    long long id = 0;
    std::string gateway;
    std::string number;
    std::string brand;
  };

  explicit CardStore(Database *db);

  // The customer's cards of one gateway, the one used last first.
  std::vector<Card> cards(long long customerId, const std::string &gateway) const;
  std::optional<Card> lastUsed(long long customerId) const;
  std::optional<Card> card(long long customerId, const std::string &gateway, long long id) const;
  bool remove(long long customerId, const std::string &gateway, long long id);
  // Keeps a card paid with just now; the id of its row, or -1.
  long long remember(long long customerId, const std::string &gateway, const std::string &number);
  void markUsed(long long id);

  // "411111******1111" from the full number.
  static std::string mask(const std::string &number);
  static std::string brand(const std::string &number);

private:
  Database *db_;
};

}  // namespace devstore

#endif
