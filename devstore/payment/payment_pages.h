// The pages a payment leaves the device for: the payment page that a browser method opens,
// with the return address it ends on, and the card gateway's form with the post it answers.
// Neither knows a signed-in customer: the cart's id or the order's key names what is paid.
#ifndef DEVSTORE_PAYMENT_PAGES_H
#define DEVSTORE_PAYMENT_PAGES_H

#include <httplib.h>

#include <atomic>
#include <string>

#include "card_store.h"
#include "catalogue.h"
#include "database.h"
#include "order_service.h"
#include "rest_answer.h"

namespace devstore {

class PaymentPages {
public:
  // Card numbers the gateway declines, and the decline's code.
  static constexpr const char *kDeclinedCard = "4000000000000002";
  static constexpr int kApproved = 200;
  static constexpr int kInvalidCard = 400;
  static constexpr int kDeclined = 402;

  PaymentPages(Database *db, const Catalogue *catalogue, OrderService *orders);

  void install(httplib::Server *server);

  // What the payment page does when it opens: "complete" (the default: a headless browser
  // only follows redirects), "cancel", or "ask" with two buttons. False for another word.
  bool setBrowserMode(const std::string &mode);

private:
  enum class Mode { kComplete, kCancel, kAsk };

  RestAnswer paymentPage(const httplib::Request &request) const;
  RestAnswer decide(const httplib::Request &request, const std::string &decision) const;
  RestAnswer gatewayForm(const httplib::Request &request) const;
  RestAnswer gatewayPost(const httplib::Request &request);
  // The order a gateway link names with its key.
  std::optional<OrderService::Order> linkedOrder(const httplib::Request &request) const;
  // The outcome of charging a card for the order: one of the codes above.
  int charge(const OrderService::Order &order, const httplib::Request &request, std::string *message);

  static std::optional<long long> quoteOf(const httplib::Request &request);
  static std::string field(const httplib::Request &request, const char *name);
  static std::string html(const std::string &title, const std::string &content);
  static bool validCard(const std::string &number, const std::string &expiry, const std::string &cvv);

  const Catalogue *catalogue_;
  OrderService *orders_;
  CardStore cards_;
  std::atomic<Mode> mode_{Mode::kComplete};
};

}  // namespace devstore

#endif
