#include "payment_pages.h"

#include <cstdio>
#include <ctime>

#include "markup_text.h"
#include "rest_call.h"

namespace devstore {

namespace {

const char kStorePattern[] = "/([a-z]{2}_[a-z]{2})/lpress/";

std::string money(double amount, const std::string &currency) {
  char text[48];
  std::snprintf(text, sizeof text, "%.2f %s", amount, currency.c_str());
  return text;
}

std::string hidden(const char *name, const std::string &value) {
  return std::string("<input type=\"hidden\" name=\"") + name + "\" value=\"" + value + "\">";
}

bool digits(const std::string &text, size_t least, size_t most) {
  return text.size() >= least && text.size() <= most && text.find_first_not_of("0123456789") == std::string::npos;
}

bool luhn(const std::string &number) {
  int sum = 0;
  bool twice = false;
  for (auto c = number.rbegin(); c != number.rend(); ++c, twice = !twice) {
    int digit = *c - '0';
    if (twice && (digit *= 2) > 9) digit -= 9;
    sum += digit;
  }
  return sum % 10 == 0;
}

// "MM/YY", "MMYY" or "MM/YYYY", in this month or later.
bool inForce(std::string expiry) {
  if (expiry.size() > 2 && expiry[2] == '/') expiry.erase(2, 1);
  if (!digits(expiry, 4, 6) || expiry.size() == 5) return false;
  const int month = std::stoi(expiry.substr(0, 2));
  int year = std::stoi(expiry.substr(2));
  if (year < 100) year += 2000;
  const std::time_t now = std::time(nullptr);
  std::tm today{};
  gmtime_r(&now, &today);
  return month >= 1 && month <= 12 && year * 12 + month >= (today.tm_year + 1900) * 12 + today.tm_mon + 1;
}

}  // namespace

PaymentPages::PaymentPages(Database *db, const Catalogue *catalogue, OrderService *orders)
    : catalogue_(catalogue), orders_(orders), cards_(db) {}

void PaymentPages::install(httplib::Server *server) {
  const std::string store = kStorePattern;
  server->Get(store + "payment",
              [this](const httplib::Request &req, httplib::Response &res) { paymentPage(req).sendTo(res); });
  server->Post(store + "payment", [this](const httplib::Request &req, httplib::Response &res) {
    decide(req, field(req, "decision")).sendTo(res);
  });
  server->Get(store + "payment/done", [](const httplib::Request &, httplib::Response &res) {
    RestAnswer::page(html("Payment finished", "<p>You can return to the store now.</p>")).sendTo(res);
  });
  server->Get(store + "payonline/gateway",
              [this](const httplib::Request &req, httplib::Response &res) { gatewayForm(req).sendTo(res); });
  server->Post(store + "payonline/gateway",
               [this](const httplib::Request &req, httplib::Response &res) { gatewayPost(req).sendTo(res); });
}

bool PaymentPages::setBrowserMode(const std::string &mode) {
  if (mode == "complete")
    mode_ = Mode::kComplete;
  else if (mode == "cancel")
    mode_ = Mode::kCancel;
  else if (mode == "ask")
    mode_ = Mode::kAsk;
  else
    return false;
  return true;
}

RestAnswer PaymentPages::paymentPage(const httplib::Request &request) const {
  const Mode mode = mode_;
  if (mode != Mode::kAsk) return decide(request, mode == Mode::kComplete ? "complete" : "cancel");
  const auto quote = quoteOf(request);
  const auto owner = quote ? orders_->quoteOwner(*quote) : std::nullopt;
  if (!owner) return RestAnswer::error(404, "no such cart");
  const std::string method = MarkupText::escape(field(request, "method"));
  const std::string content = "<p>Cart " + std::to_string(*quote) + ", paid by " + method +
                              ".</p><form method=\"post\">" + hidden("quote", std::to_string(*quote)) +
                              hidden("order", MarkupText::escape(field(request, "order"))) + hidden("method", method) +
                              "<button name=\"decision\" value=\"complete\">Pay</button> " +
                              "<button name=\"decision\" value=\"cancel\">Cancel</button></form>";
  return RestAnswer::page(html("Payment", content));
}

// Decides the order of the cart, made now when the method did not make one before, and
// leads the browser to the address the device waits for.
RestAnswer PaymentPages::decide(const httplib::Request &request, const std::string &decision) const {
  if (decision != "complete" && decision != "cancel") return RestAnswer::error(400, "decide complete or cancel");
  const auto quote = quoteOf(request);
  if (!quote || !orders_->quoteOwner(*quote)) return RestAnswer::error(404, "no such cart");
  auto order = orders_->orderOfQuote(*quote);
  const std::string named = field(request, "order");
  if (!named.empty() && (!order || std::to_string(order->id) != named)) {
    return RestAnswer::error(404, "the order is not the cart's");
  }
  if (!order) {
    RestAnswer failure;
    const auto id = orders_->orderQuote(*quote, field(request, "method"), "{}", "", &failure);
    if (!id) return failure;
    order = orders_->order(*id);
  }
  if (order && order->status == "pending") {
    if (decision == "complete")
      orders_->complete(order->id);
    else
      orders_->cancel(order->id);
  }
  return RestAnswer::redirect("http://" + request.get_header_value("Host") + "/" + std::string(request.matches[1]) +
                              "/lpress/payment/done");
}

RestAnswer PaymentPages::gatewayForm(const httplib::Request &request) const {
  const auto order = linkedOrder(request);
  if (!order) return RestAnswer::error(404, "no such order");
  if (order->status != "pending") return RestAnswer::error(409, "the order is " + order->status);
  std::string content = "<p>Order " + std::to_string(order->id) + ": " + money(order->total, order->currency) +
                        "</p><form method=\"post\">" + hidden("order", std::to_string(order->id)) +
                        hidden("key", MarkupText::escape(field(request, "key"))) +
                        hidden("remember", MarkupText::escape(field(request, "remember"))) +
                        hidden("card", MarkupText::escape(field(request, "card")));
  for (const char *name : {"CardHolderName", "CardNumber", "CardExpDate", "CardCvv", "Email"}) {
    content += std::string("<p><label>") + name + " <input name=\"" + name + "\"></label></p>";
  }
  content += hidden("Issure", " ") + "<button>Pay</button></form>";
  return RestAnswer::page(html("Card payment", content));
}

// Answers "Code=<n>&..." with 200 whatever the card's fate; only a link that names no
// order waiting for a payment gets an error status.
RestAnswer PaymentPages::gatewayPost(const httplib::Request &request) {
  const auto order = linkedOrder(request);
  if (!order) return RestAnswer::error(404, "no such order");
  if (order->status != "pending") return RestAnswer::error(409, "the order is " + order->status);
  std::string message;
  const int code = charge(*order, request, &message);
  std::fprintf(stderr, "devstore: gateway charge of order %lld: %d %s\n", order->id, code, message.c_str());
  return RestAnswer::text("Code=" + std::to_string(code) + "&OrderId=" + std::to_string(order->id) +
                          "&Message=" + message);
}

int PaymentPages::charge(const OrderService::Order &order, const httplib::Request &request, std::string *message) {
  const std::string number = field(request, "CardNumber");
  const std::string stored = field(request, "card");
  std::optional<CardStore::Card> card;
  if (number.empty() && !stored.empty()) {
    const auto id = RestCall::idOf(Json::Value(stored));
    card = id ? cards_.card(order.customer_id, CardStore::kPayOnline, *id) : std::nullopt;
    if (!card) {
      *message = "no such card";
      return kInvalidCard;
    }
  } else if (!validCard(number, field(request, "CardExpDate"), field(request, "CardCvv"))) {
    *message = "the card's data are not valid";
    return kInvalidCard;
  } else if (number == kDeclinedCard) {
    orders_->cancel(order.id);
    *message = "declined";
    return kDeclined;
  }
  if (!orders_->complete(order.id)) {
    *message = "the order could not be completed";
    return kInvalidCard;
  }
  if (card) cards_.markUsed(card->id);
  if (!card && field(request, "remember") == "1") cards_.remember(order.customer_id, CardStore::kPayOnline, number);
  *message = "approved";
  return kApproved;
}

std::optional<OrderService::Order> PaymentPages::linkedOrder(const httplib::Request &request) const {
  const auto id = RestCall::idOf(Json::Value(field(request, "order")));
  const auto order = id ? orders_->order(*id) : std::nullopt;
  if (!order || order->payment_key != field(request, "key")) return std::nullopt;
  return order;
}

// Browser methods name the cart in one of two ways.
std::optional<long long> PaymentPages::quoteOf(const httplib::Request &request) {
  const std::string id = field(request, "quote_id");
  return RestCall::idOf(Json::Value(id.empty() ? field(request, "quote") : id));
}

// A form field from the body, or a parameter of the address: the device posts the gateway
// link's parameters in the body, a browser's form keeps them in the address.
std::string PaymentPages::field(const httplib::Request &request, const char *name) {
  httplib::Params form;
  httplib::detail::parse_query_text(request.body, form);
  const auto found = form.find(name);
  if (found != form.end()) return found->second;
  return request.get_param_value(name);
}

std::string PaymentPages::html(const std::string &title, const std::string &content) {
  return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" + title +
         "</title></head>\n<body style=\"font-family: sans-serif\"><h1>" + title + "</h1>\n" + content +
         "\n</body></html>\n";
}

bool PaymentPages::validCard(const std::string &number, const std::string &expiry, const std::string &cvv) {
  return digits(number, 12, 19) && luhn(number) && inForce(expiry) && digits(cvv, 3, 4);
}

}  // namespace devstore
