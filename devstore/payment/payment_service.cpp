#include "payment_service.h"

#include <cctype>

namespace devstore {

namespace {

// The billing address a device sends back with its order; one made-up address per country.
struct Address {
  const char *store;
  const char *region_id;
  const char *street;
  const char *postcode;
  const char *city;
  const char *telephone;
  const char *agreement_ids;
};

const Address kAddresses[] = {
    {"de_de", "", "Musterstraße 1", "10115", "Berlin", "+49 30 1234567", "1,2"},
    {"en_us", "43", "1 Main Street", "10001", "New York", "+1 212 555 0100", ""},
    {"uk_ua", "", "Khreshchatyk 1", "01001", "Kyiv", "+380 44 123 4567", ""},
};

const Address &addressOf(const std::string &store) {
  for (const auto &address : kAddresses) {
    if (store == address.store) return address;
  }
  return kAddresses[0];
}

std::string countryId(const std::string &store) {
  std::string id = store.substr(store.size() - 2);
  for (auto &c : id) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return id;
}

Json::Value cardJson(const CardStore::Card &card, const char *id, const char *number) {
  Json::Value item(Json::objectValue);
  item[id] = std::to_string(card.id);
  item[number] = card.number;
  return item;
}

}  // namespace

PaymentService::PaymentService(Database *db, OrderService *orders) : db_(db), orders_(orders), cards_(db) {}

RestAnswer PaymentService::methods(const RestCall &call, bool withRebill) const {
  Json::Value list(Json::arrayValue);
  for (const auto &row : db_->query("SELECT * FROM payment_methods ORDER BY position")) {
    list.append(method(call, row, withRebill));
  }
  return RestAnswer::json(list);
}

Json::Value PaymentService::method(const RestCall &call, const SqlRow &row, bool withRebill) const {
  const std::string code = row.text("code");
  const std::string road = row.text("road");
  const Address &address = addressOf(call.store.code);
  const std::string gateway = pagesUrl(call) + "payonline/gateway";
  Json::Value item(Json::objectValue);
  item["country"] = call.store.name;
  item["title"] = row.text(call.store.language == "deu" ? "title_de" : "title_en");
  item["image"] = "";
  // The device appends "&quote_id=" to the link of these two, and "quote=" to the others'.
  const bool quoteIdForm = code == "hgwcc" || code == "hgwsue";
  item["link"] = road == "browser"   ? pagesUrl(call) + "payment?method=" + code + (quoteIdForm ? "" : "&")
                 : road == "gateway" ? gateway
                                     : "";
  item["getParams"] = "";
  item["redirectUrl"] = road == "browser" ? pagesUrl(call) + "payment/done" : "";
  item["method"] = code;
  item["agreement_ids"] = address.agreement_ids;
  item["region_id"] = address.region_id;
  item["country_id"] = countryId(call.store.code);
  item["street"] = address.street;
  item["postcode"] = address.postcode;
  item["city"] = address.city;
  item["telephone"] = address.telephone;
  if (withRebill) {
    item["usePaymentInformation"] = 1;
    item["link_rebill"] = code == "hgwcc"     ? call.storeUrl() + "rest/V1/device-payment/hgwcc-rebill"
                          : road == "gateway" ? gateway
                                              : "";
  }
  return item;
}

RestAnswer PaymentService::lastCard(const RestCall &call) const {
  Json::Value list(Json::arrayValue);
  if (const auto card = cards_.lastUsed(call.customer)) {
    Json::Value item = cardJson(*card, "entity_id", "card_number");
    item["method"] = card->gateway == CardStore::kHgwcc ? "hgwcc" : "payonlinepaymentmethod";
    list.append(item);
  }
  return RestAnswer::json(list);
}

RestAnswer PaymentService::cards(const RestCall &call, const std::string &gateway) const {
  Json::Value list(Json::arrayValue);
  for (const auto &card : cards_.cards(call.customer, gateway)) {
    if (gateway == CardStore::kHgwcc) {
      Json::Value item = cardJson(card, "entity_id", "card_number");
      item["brand"] = card.brand;
      list.append(item);
    } else {
      list.append(cardJson(card, "id", "card"));
    }
  }
  return RestAnswer::json(list);
}

RestAnswer PaymentService::removeCard(const RestCall &call, const std::string &gateway, const char *member) {
  const auto id = call.id(member);
  if (!id) return RestAnswer::error(400, std::string("give \"") + member + "\"");
  if (!cards_.remove(call.customer, gateway, *id)) return RestAnswer::error(404, "no such card");
  return RestAnswer::boolean(true);
}

RestAnswer PaymentService::rebill(const RestCall &call) {
  const auto quoteId = call.id("quote_id");
  const auto cardId = call.id("card_id");
  if (!quoteId || !cardId) return RestAnswer::error(400, "give \"quote_id\" and \"card_id\"");
  const auto card = cards_.card(call.customer, CardStore::kHgwcc, *cardId);
  if (!card) return RestAnswer::error(404, "no such card");
  const auto owner = orders_->quoteOwner(*quoteId);
  if (!owner || owner->first != call.customer) return RestAnswer::error(404, "no such cart");
  auto order = orders_->orderOfQuote(*quoteId);
  if (!order) {
    RestAnswer failure;
    const auto id = orders_->orderQuote(*quoteId, "hgwcc", "{}", "", &failure);
    if (!id) return failure;
    order = orders_->order(*id);
  }
  if (!order || order->status != "pending") return RestAnswer::error(409, "the order is not waiting for a payment");
  if (!orders_->complete(order->id)) return RestAnswer::error(500, "the order could not be completed");
  cards_.markUsed(card->id);
  return RestAnswer::boolean(true);
}

RestAnswer PaymentService::gatewayLink(const RestCall &call) const {
  const auto orderId = call.id("orderId");
  if (!orderId) return RestAnswer::error(400, "give \"orderId\"");
  const auto order = orders_->order(*orderId);
  if (!order || order->customer_id != call.customer) return RestAnswer::error(404, "no such order");
  if (order->status != "pending") return RestAnswer::error(409, "the order is not waiting for a payment");
  const std::string card = call.text("rebillCard").value_or("");
  if (!card.empty()) {
    const auto id = RestCall::idOf(Json::Value(card));
    if (!id || !cards_.card(call.customer, CardStore::kPayOnline, *id)) return RestAnswer::error(404, "no such card");
  }
  std::string link = call.origin + "/" + order->store_code +
                     "/lpress/payonline/gateway?order=" + std::to_string(order->id) + "&key=" + order->payment_key;
  if (call.body["rebillRemember"].isBool() && call.body["rebillRemember"].asBool()) link += "&remember=1";
  if (!card.empty()) link += "&card=" + card;
  return RestAnswer::string(link);
}

}  // namespace devstore
