#include "cart_service.h"

#include <cmath>
#include <cstdio>
#include <map>

#include "unix_time.h"

namespace devstore {

namespace {

std::string money(double amount) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", amount);
  return text;
}

}  // namespace

CartService::CartService(Database *db, const Catalogue *catalogue) : db_(db), catalogue_(catalogue) {}

RestAnswer CartService::clear(const RestCall &call) {
  const long long removed = db_->run(
      "DELETE FROM quote_items WHERE quote_id IN"
      " (SELECT id FROM quotes WHERE customer_id = ? AND store_code = ? AND active = 1)",
      {call.customer, call.store.code});
  return removed < 0 ? RestAnswer::error(500, "the cart could not be emptied") : RestAnswer::boolean(true);
}

RestAnswer CartService::quote(const RestCall &call) {
  long long id = -1;
  db_->transaction([&] {
    const auto rows = db_->query("SELECT id FROM quotes WHERE customer_id = ? AND store_code = ? AND active = 1",
                                 {call.customer, call.store.code});
    id = !rows.empty() ? rows.front().integer("id")
                       : db_->run("INSERT INTO quotes(customer_id, store_code, created_at) VALUES (?, ?, ?)",
                                  {call.customer, call.store.code, UnixTime::now()});
    return id >= 0;
  });
  return id < 0 ? RestAnswer::error(500, "no cart could be made") : RestAnswer::string(std::to_string(id));
}

RestAnswer CartService::owned(const RestCall &call) const {
  RestAnswer failure;
  const auto list = books(call.store, call.list("bookId", "ids"), &failure);
  if (!list) return failure;
  bool any = false;
  for (const auto &book : *list) any = any || owns(call.customer, book.id);
  return RestAnswer::boolean(any);
}

RestAnswer CartService::salable(const RestCall &call) const {
  RestAnswer failure;
  const auto list = books(call.store, call.list("sku", "skus"), &failure);
  if (!list) return failure;
  Json::Value answer(Json::arrayValue);
  for (const auto &book : *list) {
    Json::Value item(Json::objectValue);
    item["sku"] = std::to_string(book.id);
    item["is_salable"] = canBeSold(book);
    answer.append(item);
  }
  return RestAnswer::json(answer);
}

RestAnswer CartService::add(const RestCall &call) {
  const auto quoteId = call.id("quote_id");
  const Json::Value &items = call.body["cart_items"];
  if (!quoteId || !items.isArray()) return RestAnswer::error(400, "give \"quote_id\" and \"cart_items\"");
  std::vector<Json::Value> skus;
  for (const auto &item : items) {
    if (!item.isObject()) return RestAnswer::error(400, "each of \"cart_items\" must be an object");
    if (!item["quote_id"].isNull() && RestCall::idOf(item["quote_id"]) != quoteId) {
      return RestAnswer::error(400, "an item names another quote");
    }
    skus.push_back(item["sku"]);
  }
  RestAnswer failure;
  const auto list = books(call.store, skus, &failure);
  if (!list) return failure;
  for (const auto &book : *list) {
    if (!canBeSold(book)) return RestAnswer::error(400, "book " + std::to_string(book.id) + " cannot be bought");
    if (owns(call.customer, book.id)) return RestAnswer::error(400, "book " + std::to_string(book.id) + " is bought");
  }
  const auto quote =
      db_->query("SELECT id FROM quotes WHERE id = ? AND customer_id = ? AND store_code = ? AND active = 1",
                 {*quoteId, call.customer, call.store.code});
  if (quote.empty()) return RestAnswer::error(404, "no such open cart");
  const bool added = db_->transaction([&] {
    for (const auto &book : *list) {
      if (db_->run("INSERT OR IGNORE INTO quote_items(quote_id, book_id) VALUES (?, ?)", {*quoteId, book.id}) < 0) {
        return false;
      }
    }
    return true;
  });
  return added ? RestAnswer::boolean(true) : RestAnswer::error(500, "the books could not be added");
}

// Answered as a bare number, which the client shows as the cost of the selection.
RestAnswer CartService::groupPrice(const RestCall &call) const {
  RestAnswer failure;
  if (!call.body["ids"].isArray()) return RestAnswer::error(400, "give \"ids\"");
  const auto list = books(call.store, call.list("ids", "ids"), &failure);
  if (!list) return failure;
  std::map<long long, int> perSeries;
  for (const auto &book : *list) ++perSeries[book.series_id];
  double total = 0;
  for (const auto &book : *list) {
    const bool discounted =
        book.series_id != 0 && book.series_discount > 0 && perSeries[book.series_id] >= book.series_min_books;
    total += discounted ? book.price * (100 - book.series_discount) / 100.0 : book.price;
  }
  RestAnswer answer;
  answer.body = money(std::round(total * 100) / 100);
  return answer;
}

std::optional<std::vector<BookRecord>> CartService::books(const StoreRecord &store, const std::vector<Json::Value> &ids,
                                                          RestAnswer *failure) const {
  if (ids.empty()) {
    *failure = RestAnswer::error(400, "name at least one book");
    return std::nullopt;
  }
  std::vector<BookRecord> list;
  for (const auto &value : ids) {
    const auto id = RestCall::idOf(value);
    const auto book = id ? catalogue_->book(store, *id) : std::nullopt;
    if (!book) {
      *failure = RestAnswer::error(404, "no such book: " + RestCall::textOf(value).value_or("?"));
      return std::nullopt;
    }
    list.push_back(*book);
  }
  return list;
}

bool CartService::owns(long long customerId, long long bookId) const {
  return !db_->query("SELECT 1 FROM purchases WHERE customer_id = ? AND book_id = ?", {customerId, bookId}).empty();
}

}  // namespace devstore
