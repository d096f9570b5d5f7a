#include "opds/opds_entry.h"

#include <charconv>

#include "mime_types.h"

namespace lumenpress::opds::OPDS {

namespace {

// The first price of the first buying link that has one, else of a plain or borrowing acquisition link.
const Price *BuyingPrice(const Entry &entry) {
  for (const auto &link : entry.links) {
    if (link->type == Link::kBuy && !link->prices.empty()) return &link->prices.front();
  }
  for (const auto &link : entry.links) {
    if ((link->type == Link::kAcquisition || link->type == Link::kBorrow) && !link->prices.empty()) {
      return &link->prices.front();
    }
  }
  return nullptr;
}

// The last separator of a price is the decimal one; any before it group thousands and are dropped.
std::string WithDot(const std::string &price) {
  const size_t decimal = price.find_last_of(".,");
  if (decimal == std::string::npos) return price;
  std::string result;
  result.reserve(price.size());
  for (size_t i = 0; i < price.size(); ++i) {
    if (i == decimal) {
      result += '.';
    } else if (price[i] != '.' && price[i] != ',') {
      result += price[i];
    }
  }
  return result;
}

}  // namespace

std::shared_ptr<Link> Entry::GetLinkByType(Link::LinkType type) const {
  for (const auto &link : links) {
    if (link->type == type) return link;
  }
  return nullptr;
}

std::shared_ptr<Link> Entry::GetGoLink() const {
  if (auto link = GetLinkByType(Link::kSubsection)) return link;
  for (const auto &link : links) {
    if ((link->rel.empty() || link->rel == "alternate") && MimeTypes::IsAtom(link->mime)) return link;
  }
  return nullptr;
}

std::string Entry::GetPrice() const {
  const Price *price = BuyingPrice(*this);
  return price && !price->value.empty() ? price->value : "0";
}

std::string Entry::GetOldPrice() const {
  const Price *price = BuyingPrice(*this);
  return price && !price->old_value.empty() ? price->old_value : "0";
}

std::string Entry::GetPriceWithDot() const {
  return WithDot(GetPrice());
}

std::string Entry::GetOldPriceWithDot() const {
  return WithDot(GetOldPrice());
}

// from_chars, because strtod would follow the locale that Qt sets for the process.
double Entry::GetPriceDouble() const {
  const std::string price = GetPriceWithDot();
  double value = 0;
  std::from_chars(price.data(), price.data() + price.size(), value);
  return value;
}

std::string Entry::GetCurrencyCode() const {
  const Price *price = BuyingPrice(*this);
  return price ? price->currency_code : std::string();
}

}  // namespace lumenpress::opds::OPDS
