// What a customer has and wants: the bought books and the wish list. The catalogue's
// "purchased" and "wishlist" feeds show the same rows.
#ifndef DEVSTORE_CUSTOMER_LIBRARY_H
#define DEVSTORE_CUSTOMER_LIBRARY_H

#include "catalogue.h"
#include "database.h"
#include "rest_answer.h"
#include "rest_call.h"

namespace devstore {

class CustomerLibrary {
public:
  CustomerLibrary(Database *db, const Catalogue *catalogue);

  RestAnswer purchases(const RestCall &call) const;
  RestAnswer wish(const RestCall &call);
  // Takes every book of "ids", or the one of "productId", off the list.
  RestAnswer unwish(const RestCall &call);

private:
  Database *db_;
  const Catalogue *catalogue_;
};

}  // namespace devstore

#endif
