// The REST side of paying: the payment methods of a store, the customer's stored cards, a
// charge of a stored card, and the link to the card gateway's form.
#ifndef DEVSTORE_PAYMENT_SERVICE_H
#define DEVSTORE_PAYMENT_SERVICE_H

#include "card_store.h"
#include "database.h"
#include "order_service.h"
#include "rest_answer.h"
#include "rest_call.h"

namespace devstore {

class PaymentService {
public:
  PaymentService(Database *db, OrderService *orders);

  // `withRebill` adds the members of the device's newer list.
  RestAnswer methods(const RestCall &call, bool withRebill) const;
  RestAnswer lastCard(const RestCall &call) const;
  RestAnswer cards(const RestCall &call, const std::string &gateway) const;
  RestAnswer removeCard(const RestCall &call, const std::string &gateway, const char *member);
  // Orders a cart and charges a stored card for it at once.
  RestAnswer rebill(const RestCall &call);
  RestAnswer gatewayLink(const RestCall &call) const;

  // Where the store's pages are; the link of a method and the gateway's link start here.
  static std::string pagesUrl(const RestCall &call) { return call.storeUrl() + "lpress/"; }

private:
  Json::Value method(const RestCall &call, const SqlRow &row, bool withRebill) const;

  Database *db_;
  OrderService *orders_;
  CardStore cards_;
};

}  // namespace devstore

#endif
