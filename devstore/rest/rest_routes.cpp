#include "rest_routes.h"

#include "json_text.h"

namespace devstore {

namespace {

const char kRestPattern[] = "/([a-z]{2}_[a-z]{2})/rest/V1/";

}  // namespace

RestRoutes::RestRoutes(Database *db, const Catalogue *catalogue, TokenStore *tokens, OrderService *orders)
    : catalogue_(catalogue),
      tokens_(tokens),
      accounts_(db, catalogue, tokens),
      carts_(db, catalogue),
      orders_(orders),
      payments_(db, orders),
      library_(db, catalogue) {}

void RestRoutes::install(httplib::Server *server) {
  installAccount(server);
  installCheckout(server);
  installPayment(server);
  installLibrary(server);
  const auto unknown = [](const httplib::Request &, httplib::Response &res) {
    RestAnswer::error(404, "no such endpoint").sendTo(res);
  };
  server->Get(std::string(kRestPattern) + ".*", unknown);
  server->Post(std::string(kRestPattern) + ".*", unknown);
}

void RestRoutes::installAccount(httplib::Server *server) {
  post(server, "is-customer/exist", Access::kAnyone, [this](const RestCall &c) { return accounts_.checkUser(c); });
  post(server, "device-integration/stores-all", Access::kAnyone,
       [this](const RestCall &c) { return accounts_.stores(c); });
  post(server, "customers", Access::kAnyone, [this](const RestCall &c) { return accounts_.createAccount(c); });
  post(server, "customer-set/subscription", Access::kCustomer,
       [this](const RestCall &c) { return accounts_.setSubscription(c); });
  post(server, "user-get/tokens", Access::kAnyone, [this](const RestCall &c) { return accounts_.login(c); });
  post(server, "customer-token/refresh", Access::kAnyone, [this](const RestCall &c) { return accounts_.refresh(c); });
  get(server, "customers/me/?", Access::kCustomer, [this](const RestCall &c) { return accounts_.me(c); });
}

void RestRoutes::installCheckout(httplib::Server *server) {
  post(server, "customer-check/cart", Access::kCustomer, [this](const RestCall &c) { return carts_.clear(c); });
  post(server, "carts/mine", Access::kCustomer, [this](const RestCall &c) { return carts_.quote(c); });
  post(server, "customer-check/purchase", Access::kCustomer, [this](const RestCall &c) { return carts_.owned(c); });
  post(server, "carts/mine/opds-checkout-check", Access::kCustomer,
       [this](const RestCall &c) { return carts_.salable(c); });
  post(server, "device-payment/mine/items", Access::kCustomer, [this](const RestCall &c) { return carts_.add(c); });
  post(server, "grouped-product/count", Access::kAnyone, [this](const RestCall &c) { return carts_.groupPrice(c); });
  post(server, "carts/mine/payment-information", Access::kCustomer,
       [this](const RestCall &c) { return orders_->place(c); });
  post(server, "device-integration/set-source", Access::kCustomer,
       [this](const RestCall &c) { return orders_->setSource(c); });
  post(server, "customer-get/order-status", Access::kCustomer,
       [this](const RestCall &c) { return orders_->status(c); });
}

void RestRoutes::installPayment(httplib::Server *server) {
  get(server, "customer-get/payment-methods", Access::kAnyone,
      [this](const RestCall &c) { return payments_.methods(c, false); });
  get(server, "device-payment/methods", Access::kAnyone,
      [this](const RestCall &c) { return payments_.methods(c, true); });
  post(server, "device-payment/last/card", Access::kCustomer,
       [this](const RestCall &c) { return payments_.lastCard(c); });
  post(server, "device-payment/hgwcc-get-card", Access::kCustomer,
       [this](const RestCall &c) { return payments_.cards(c, "hgwcc"); });
  post(server, "payonline/get-card", Access::kCustomer,
       [this](const RestCall &c) { return payments_.cards(c, "payonline"); });
  post(server, "device-payment/remove-card", Access::kCustomer,
       [this](const RestCall &c) { return payments_.removeCard(c, "hgwcc", "card_id"); });
  post(server, "payonline/remove-card", Access::kCustomer,
       [this](const RestCall &c) { return payments_.removeCard(c, "payonline", "id"); });
  post(server, "device-payment/hgwcc-rebill", Access::kCustomer,
       [this](const RestCall &c) { return payments_.rebill(c); });
  post(server, "payonline/get-link", Access::kCustomer, [this](const RestCall &c) { return payments_.gatewayLink(c); });
}

void RestRoutes::installLibrary(httplib::Server *server) {
  post(server, "customer-get/purchases", Access::kCustomer,
       [this](const RestCall &c) { return library_.purchases(c); });
  post(server, "customer-add/wishlist", Access::kCustomer, [this](const RestCall &c) { return library_.wish(c); });
  post(server, "customer-remove-from/wishlist", Access::kCustomer,
       [this](const RestCall &c) { return library_.unwish(c); });
}

void RestRoutes::post(httplib::Server *server, const std::string &path, Access access, Handler handler) {
  server->Post(kRestPattern + path, [this, access, handler](const httplib::Request &req, httplib::Response &res) {
    serve(req, res, access, handler);
  });
}

void RestRoutes::get(httplib::Server *server, const std::string &path, Access access, Handler handler) {
  server->Get(kRestPattern + path, [this, access, handler](const httplib::Request &req, httplib::Response &res) {
    serve(req, res, access, handler);
  });
}

void RestRoutes::serve(const httplib::Request &request, httplib::Response &response, Access access,
                       const Handler &handler) const {
  RestCall call;
  const auto refused = frame(request, access, &call);
  const RestAnswer answer = refused ? *refused : handler(call);
  if (answer.status >= 400) {
    std::fprintf(stderr, "devstore: %s %s: %d %s\n", request.method.c_str(), request.path.c_str(), answer.status,
                 answer.body.c_str());
  }
  answer.sendTo(response);
}

std::optional<RestAnswer> RestRoutes::frame(const httplib::Request &request, Access access, RestCall *call) const {
  const auto store = catalogue_->store(request.matches[1]);
  if (!store) return RestAnswer::error(404, "no such store");
  call->store = *store;
  call->origin = "http://" + request.get_header_value("Host");
  Json::Value body;
  if (!request.body.empty() && !JsonText::parse(request.body, &body)) {
    return RestAnswer::error(400, "the body is no JSON");
  }
  if (!body.isNull() && !body.isObject()) return RestAnswer::error(400, "the body must be a JSON object");
  if (body.isObject()) call->body = body;
  bool refused = false;
  call->customer = customerOf(request, call->body, &refused).value_or(0);
  if (access == Access::kCustomer && call->customer == 0) {
    return RestAnswer::error(401, refused ? "the access token is unknown or has expired" : "sign in first");
  }
  return std::nullopt;
}

// The "Authorization" header names the customer; a call without it may carry its token in
// the body, as the newsletter consent does.
std::optional<long long> RestRoutes::customerOf(const httplib::Request &request, const Json::Value &body,
                                                bool *refused) const {
  const std::string authorization = request.get_header_value("Authorization");
  std::optional<long long> customer;
  if (!authorization.empty()) {
    customer = tokens_->customerFor(authorization);
  } else if (const auto token = RestCall::textOf(body.get("access_token", body["accessToken"]))) {
    customer = tokens_->customerOfAccessToken(*token);
  } else {
    return std::nullopt;
  }
  *refused = !customer;
  return customer;
}

}  // namespace devstore
