// The customer's cart (a quote) before it becomes an order: emptying it, adding books, the
// checks made before buying, and what a selection of a series costs.
#ifndef DEVSTORE_CART_SERVICE_H
#define DEVSTORE_CART_SERVICE_H

#include <optional>
#include <vector>

#include "catalogue.h"
#include "database.h"
#include "rest_answer.h"
#include "rest_call.h"

namespace devstore {

class CartService {
public:
  CartService(Database *db, const Catalogue *catalogue);

  RestAnswer clear(const RestCall &call);
  // The active quote's id, made when there is none.
  RestAnswer quote(const RestCall &call);
  // Whether the customer owns any of the books already.
  RestAnswer owned(const RestCall &call) const;
  RestAnswer salable(const RestCall &call) const;
  RestAnswer add(const RestCall &call);
  // The price of a selection, with the series discount where enough books of one series are in it.
  RestAnswer groupPrice(const RestCall &call) const;

  static bool canBeSold(const BookRecord &book) { return book.in_stock; }

private:
  // The books that `ids` name (book ids as text or number); an answer saying why not otherwise.
  std::optional<std::vector<BookRecord>> books(const StoreRecord &store, const std::vector<Json::Value> &ids,
                                               RestAnswer *failure) const;
  bool owns(long long customerId, long long bookId) const;

  Database *db_;
  const Catalogue *catalogue_;
};

}  // namespace devstore

#endif
