#include <gtest/gtest.h>

#include <memory>

#include "opds/opds_entry.h"

using lumenpress::opds::OPDS::Entry;
using lumenpress::opds::OPDS::Link;
using lumenpress::opds::OPDS::Price;

namespace {

std::shared_ptr<Link> AddLink(Entry *entry, Link::LinkType type, const char *rel = "", const char *mime = "") {
  auto link = std::make_shared<Link>();
  link->type = type;
  link->rel = rel;
  link->mime = mime;
  entry->links.push_back(link);
  return link;
}

void AddPrice(Link *link, const char *value, const char *currency, const char *old_value = "0") {
  auto *price = new Price;
  price->value = value;
  price->currency_code = currency;
  price->old_value = old_value;
  link->prices.push_back(price);
}

}  // namespace

TEST(Entry, PricesComeFromTheBuyingLink) {
  Entry entry;
  EXPECT_EQ(entry.GetPrice(), "0");
  EXPECT_EQ(entry.GetOldPrice(), "0");
  EXPECT_EQ(entry.GetPriceDouble(), 0.0);
  EXPECT_EQ(entry.GetCurrencyCode(), "");

  AddPrice(AddLink(&entry, Link::kBorrow).get(), "2.50", "USD");
  EXPECT_EQ(entry.GetPrice(), "2.50");
  EXPECT_EQ(entry.GetCurrencyCode(), "USD");

  AddLink(&entry, Link::kBuy);
  auto buy = AddLink(&entry, Link::kBuy);
  AddPrice(buy.get(), "1.234,50", "EUR", "1.500,00");
  AddPrice(buy.get(), "1.100,00", "GBP");
  EXPECT_EQ(entry.GetPrice(), "1.234,50");
  EXPECT_EQ(entry.GetPriceWithDot(), "1234.50");
  EXPECT_EQ(entry.GetOldPrice(), "1.500,00");
  EXPECT_EQ(entry.GetOldPriceWithDot(), "1500.00");
  EXPECT_DOUBLE_EQ(entry.GetPriceDouble(), 1234.5);
  EXPECT_EQ(entry.GetCurrencyCode(), "EUR");

  buy->prices.front().value = "4,99";
  EXPECT_EQ(entry.GetPriceWithDot(), "4.99");
  EXPECT_DOUBLE_EQ(entry.GetPriceDouble(), 4.99);
  buy->prices.front().value = "free";
  EXPECT_EQ(entry.GetPriceDouble(), 0.0);
}

TEST(Entry, LinksByTypeAndTheGoLink) {
  Entry entry;
  EXPECT_EQ(entry.GetLinkByType(Link::kImage), nullptr);
  EXPECT_EQ(entry.GetGoLink(), nullptr);
  AddLink(&entry, Link::kAlternateHtml, "alternate", "text/html");
  auto alternate = AddLink(&entry, Link::kOther, "alternate", "application/atom+xml;type=entry");
  auto image = AddLink(&entry, Link::kImage);
  AddLink(&entry, Link::kImage);
  EXPECT_EQ(entry.GetLinkByType(Link::kImage), image);
  EXPECT_EQ(entry.GetGoLink(), alternate);
  auto subsection = AddLink(&entry, Link::kSubsection, "subsection");
  EXPECT_EQ(entry.GetGoLink(), subsection);
}
