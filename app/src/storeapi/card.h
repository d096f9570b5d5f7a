// A payment card kept by one of the store's gateways, as the store shows it.
#ifndef LUMENPRESS_CARD_H
#define LUMENPRESS_CARD_H

#include <string>

namespace lumenpress::bookstore {

struct Card {
  std::string id;
  // Masked by the store.
  std::string number;
  // The brand or method; empty for the PayOnline gateway's cards.
  std::string method;
};

}  // namespace lumenpress::bookstore

#endif
