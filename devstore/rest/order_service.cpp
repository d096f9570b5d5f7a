#include "order_service.h"

#include <cstdio>

#include "json_text.h"
#include "unix_time.h"

namespace devstore {

namespace {

OrderService::Order orderFrom(const SqlRow &row) {
  OrderService::Order order;
  order.id = row.integer("id");
  order.customer_id = row.integer("customer_id");
  order.quote_id = row.integer("quote_id");
  order.store_code = row.text("store_code");
  order.method = row.text("method");
  order.status = row.text("status");
  order.total = row.real("total");
  order.currency = row.text("currency");
  order.payment_key = row.text("payment_key");
  return order;
}

// "1,2" from ["1", "2"]; members that are no text are left out.
std::string agreementsOf(const Json::Value &paymentMethod) {
  std::string ids;
  for (const auto &id : paymentMethod["extension_attributes"]["agreement_ids"]) {
    const auto text = RestCall::textOf(id);
    if (text) ids += (ids.empty() ? "" : ",") + *text;
  }
  return ids;
}

}  // namespace

OrderService::OrderService(Database *db) : db_(db) {}

RestAnswer OrderService::place(const RestCall &call) {
  const Json::Value &paymentMethod = call.body["paymentMethod"];
  const Json::Value &billing = call.body["billing_address"];
  const auto method = paymentMethod.isObject() ? RestCall::textOf(paymentMethod["method"]) : std::nullopt;
  if (!method) return RestAnswer::error(400, "give \"paymentMethod\" with its \"method\"");
  if (!billing.isNull() && !billing.isObject()) return RestAnswer::error(400, "\"billing_address\" must be an object");
  if (paymentMethod["extension_attributes"].isObject() &&
      !paymentMethod["extension_attributes"]["agreement_ids"].isArray()) {
    return RestAnswer::error(400, "\"agreement_ids\" must be an array");
  }
  const auto quote = db_->query("SELECT id FROM quotes WHERE customer_id = ? AND store_code = ? AND active = 1",
                                {call.customer, call.store.code});
  if (quote.empty()) return RestAnswer::error(400, "the cart is empty");
  RestAnswer failure;
  const auto id = orderQuote(quote.front().integer("id"), *method,
                             JsonText::write(billing.isObject() ? billing : Json::Value(Json::objectValue)),
                             agreementsOf(paymentMethod), &failure);
  return id ? RestAnswer::string(std::to_string(*id)) : failure;
}

RestAnswer OrderService::setSource(const RestCall &call) {
  const auto id = call.id("orderId");
  const auto source = call.text("source");
  if (!id || !source) return RestAnswer::error(400, "give \"orderId\" and \"source\"");
  const auto found = order(*id);
  if (!found || found->customer_id != call.customer) return RestAnswer::error(404, "no such order");
  if (db_->run("UPDATE orders SET source = ?, updated_at = ? WHERE id = ?", {*source, UnixTime::now(), *id}) < 0) {
    return RestAnswer::error(500, "the source could not be stored");
  }
  return RestAnswer::boolean(true);
}

RestAnswer OrderService::status(const RestCall &call) const {
  const auto quoteId = call.id("quoteId");
  if (!quoteId) return RestAnswer::error(400, "give \"quoteId\"");
  const auto owner = quoteOwner(*quoteId);
  if (!owner || owner->first != call.customer) return RestAnswer::error(404, "no such cart");
  const auto found = orderOfQuote(*quoteId);
  return RestAnswer::string(found ? found->status : "pending");
}

std::optional<long long> OrderService::orderQuote(long long quoteId, const std::string &method,
                                                  const std::string &billing, const std::string &agreements,
                                                  RestAnswer *failure) {
  long long orderId = 0;
  std::optional<RestAnswer> refusal;
  const bool made = db_->transaction([&] {
    const auto quote = db_->query("SELECT * FROM quotes WHERE id = ?", {quoteId});
    if (quote.empty() || quote.front().integer("active") == 0) {
      refusal = RestAnswer::error(quote.empty() ? 404 : 409, quote.empty() ? "no such cart" : "the cart is ordered");
      return false;
    }
    if (db_->query("SELECT 1 FROM payment_methods WHERE code = ?", {method}).empty()) {
      refusal = RestAnswer::error(400, "no such payment method: " + method);
      return false;
    }
    const auto items = db_->query(
        "SELECT i.book_id, p.price, (SELECT COUNT(*) FROM purchases u WHERE u.customer_id = q.customer_id"
        " AND u.book_id = i.book_id) AS owned FROM quote_items i JOIN quotes q ON q.id = i.quote_id"
        " JOIN prices p ON p.book_id = i.book_id AND p.store_code = q.store_code WHERE i.quote_id = ?",
        {quoteId});
    double total = 0;
    for (const auto &item : items) {
      total += item.real("price");
      if (item.integer("owned") > 0) refusal = RestAnswer::error(400, "a book in the cart is bought already");
    }
    if (items.empty()) refusal = RestAnswer::error(400, "the cart is empty");
    if (method == "free" && total > 0) refusal = RestAnswer::error(400, "the cart is not free");
    if (refusal) return false;
    return insertOrder(quote.front(), method, total, billing, agreements, &orderId) &&
           (total > 0 || completeInside(orderId));
  });
  if (!made) {
    *failure = refusal.value_or(RestAnswer::error(500, "the order could not be stored"));
    return std::nullopt;
  }
  std::fprintf(stderr, "devstore: order %lld of cart %lld placed, paid by %s\n", orderId, quoteId, method.c_str());
  return orderId;
}

bool OrderService::insertOrder(const SqlRow &quote, const std::string &method, double total, const std::string &billing,
                               const std::string &agreements, long long *orderId) {
  const long long quoteId = quote.integer("id");
  const std::string store = quote.text("store_code");
  *orderId = db_->run(
      "INSERT INTO orders(customer_id, quote_id, store_code, method, status, total, currency, billing, agreement_ids,"
      " created_at, updated_at) SELECT ?, ?, ?, ?, 'pending', ?, currency, ?, ?, ?, ? FROM stores WHERE code = ?",
      {quote.integer("customer_id"), quoteId, store, method, total, billing, agreements, UnixTime::now(),
       UnixTime::now(), store});
  return *orderId > 0 &&
         db_->run(
             "INSERT INTO order_items(order_id, book_id, price) SELECT ?, i.book_id, p.price FROM quote_items i"
             " JOIN prices p ON p.book_id = i.book_id AND p.store_code = ? WHERE i.quote_id = ?",
             {*orderId, store, quoteId}) >= 0 &&
         db_->run("UPDATE quotes SET active = 0 WHERE id = ?", {quoteId}) >= 0;
}

bool OrderService::complete(long long orderId) {
  const bool done = db_->transaction([&] { return completeInside(orderId); });
  if (done) std::fprintf(stderr, "devstore: order %lld complete\n", orderId);
  return done;
}

bool OrderService::completeInside(long long orderId) {
  const auto found = order(orderId);
  if (!found || found->status != "pending") return false;
  return db_->run("UPDATE orders SET status = 'complete', updated_at = ? WHERE id = ?", {UnixTime::now(), orderId}) >=
             0 &&
         db_->run(
             "INSERT OR IGNORE INTO purchases(customer_id, book_id, store_code, purchased_at)"
             " SELECT ?, book_id, ?, ? FROM order_items WHERE order_id = ?",
             {found->customer_id, found->store_code, UnixTime::now(), orderId}) >= 0;
}

bool OrderService::cancel(long long orderId) {
  const bool done = db_->transaction([&] {
    const auto found = order(orderId);
    return found && found->status == "pending" &&
           db_->run("UPDATE orders SET status = 'cancel', updated_at = ? WHERE id = ?", {UnixTime::now(), orderId}) >=
               0;
  });
  if (done) std::fprintf(stderr, "devstore: order %lld cancelled\n", orderId);
  return done;
}

std::optional<OrderService::Order> OrderService::order(long long id) const {
  const auto rows = db_->query("SELECT * FROM orders WHERE id = ?", {id});
  if (rows.empty()) return std::nullopt;
  return orderFrom(rows.front());
}

std::optional<OrderService::Order> OrderService::orderOfQuote(long long quoteId) const {
  const auto rows = db_->query("SELECT * FROM orders WHERE quote_id = ?", {quoteId});
  if (rows.empty()) return std::nullopt;
  return orderFrom(rows.front());
}

std::optional<std::pair<long long, std::string>> OrderService::quoteOwner(long long quoteId) const {
  const auto rows = db_->query("SELECT customer_id, store_code FROM quotes WHERE id = ?", {quoteId});
  if (rows.empty()) return std::nullopt;
  return std::make_pair(rows.front().integer("customer_id"), rows.front().text("store_code"));
}

}  // namespace devstore
