// The REST interface of every store under "<store>/rest/V1/": the frame that all its
// endpoints share (store from the path, JSON body, the customer a token names, errors as
// JSON), and the table of endpoints and the services that answer them.
#ifndef DEVSTORE_REST_ROUTES_H
#define DEVSTORE_REST_ROUTES_H

#include <httplib.h>

#include <functional>
#include <string>

#include "account_service.h"
#include "cart_service.h"
#include "catalogue.h"
#include "customer_library.h"
#include "database.h"
#include "order_service.h"
#include "payment_service.h"
#include "rest_answer.h"
#include "rest_call.h"
#include "token_store.h"

namespace devstore {

class RestRoutes {
public:
  RestRoutes(Database *db, const Catalogue *catalogue, TokenStore *tokens, OrderService *orders);

  void install(httplib::Server *server);

private:
  enum class Access { kAnyone, kCustomer };
  using Handler = std::function<RestAnswer(const RestCall &)>;

  void installAccount(httplib::Server *server);
  void installCheckout(httplib::Server *server);
  void installPayment(httplib::Server *server);
  void installLibrary(httplib::Server *server);
  void post(httplib::Server *server, const std::string &path, Access access, Handler handler);
  void get(httplib::Server *server, const std::string &path, Access access, Handler handler);

  void serve(const httplib::Request &request, httplib::Response &response, Access access, const Handler &handler) const;
  // Fills `call` from the request, or says why the request cannot be served.
  std::optional<RestAnswer> frame(const httplib::Request &request, Access access, RestCall *call) const;
  std::optional<long long> customerOf(const httplib::Request &request, const Json::Value &body, bool *refused) const;

  const Catalogue *catalogue_;
  TokenStore *tokens_;
  AccountService accounts_;
  CartService carts_;
  OrderService *orders_;
  PaymentService payments_;
  CustomerLibrary library_;
};

}  // namespace devstore

#endif
