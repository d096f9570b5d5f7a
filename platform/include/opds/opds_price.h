// One price of an acquisition link, with what a series discount needs.
#ifndef LUMENPRESS_OPDS_PRICE_H
#define LUMENPRESS_OPDS_PRICE_H

#include <string>

#include "opds/opds_object.h"

namespace lumenpress::opds::OPDS {

class Price : public Object {
public:
  std::string currency_code;
  std::string value;
  // "0" when there is no old price.
  std::string old_value;
  // Least number of books of a series for the discount.
  std::string min_books;
  std::string discount_count;
};

}  // namespace lumenpress::opds::OPDS

#endif
