// Orders: made from a cart with a payment method, pending until a payment decides them, then
// complete (the books become the customer's purchases) or cancelled. A cart that costs
// nothing is complete at once.
#ifndef DEVSTORE_ORDER_SERVICE_H
#define DEVSTORE_ORDER_SERVICE_H

#include <optional>
#include <string>

#include "database.h"
#include "rest_answer.h"
#include "rest_call.h"

namespace devstore {

class OrderService {
public:
  struct Order {
    long long id = 0;
    long long customer_id = 0;
    long long quote_id = 0;
    std::string store_code;
    std::string method;
    std::string status;
    double total = 0;
    std::string currency;
    std::string payment_key;
  };

  explicit OrderService(Database *db);

  // The order of the customer's active cart, paid by the method the body names.
  RestAnswer place(const RestCall &call);
  RestAnswer setSource(const RestCall &call);
  // The status of a cart's order; "pending" while the cart has none.
  RestAnswer status(const RestCall &call) const;

  // Makes the order of an open cart; nothing, and `failure` says why, when it cannot be made.
  std::optional<long long> orderQuote(long long quoteId, const std::string &method, const std::string &billing,
                                      const std::string &agreements, RestAnswer *failure);
  // A pending order becomes complete, and its books the customer's; false when it was not pending.
  bool complete(long long orderId);
  bool cancel(long long orderId);

  std::optional<Order> order(long long id) const;
  std::optional<Order> orderOfQuote(long long quoteId) const;
  // The customer and store of a cart, whether open or ordered.
  std::optional<std::pair<long long, std::string>> quoteOwner(long long quoteId) const;

private:
  bool completeInside(long long orderId);
  bool insertOrder(const SqlRow &quote, const std::string &method, double total, const std::string &billing,
                   const std::string &agreements, long long *orderId);

  Database *db_;
};

}  // namespace devstore

#endif
