#include "customer_library.h"

#include <vector>

#include "unix_time.h"

namespace devstore {

CustomerLibrary::CustomerLibrary(Database *db, const Catalogue *catalogue) : db_(db), catalogue_(catalogue) {}

RestAnswer CustomerLibrary::purchases(const RestCall &call) const {
  Json::Value list(Json::arrayValue);
  const auto rows = db_->query(
      "SELECT b.id, b.title, a.name FROM purchases p JOIN books b ON b.id = p.book_id"
      " JOIN authors a ON a.id = b.author_id WHERE p.customer_id = ? ORDER BY p.purchased_at DESC, b.id",
      {call.customer});
  for (const auto &row : rows) {
    Json::Value item(Json::objectValue);
    item["item_id"] = row.text("id");
    item["name"] = row.text("title");
    item["author"] = row.text("name");
    list.append(item);
  }
  return RestAnswer::json(list);
}

RestAnswer CustomerLibrary::wish(const RestCall &call) {
  const auto id = call.id("productId");
  if (!id) return RestAnswer::error(400, "give \"productId\"");
  if (!catalogue_->book(call.store, *id)) return RestAnswer::error(404, "no such book");
  const long long added = db_->run("INSERT OR IGNORE INTO wishlist(customer_id, book_id, added_at) VALUES (?, ?, ?)",
                                   {call.customer, *id, UnixTime::now()});
  return added < 0 ? RestAnswer::error(500, "the wish could not be stored") : RestAnswer::boolean(true);
}

RestAnswer CustomerLibrary::unwish(const RestCall &call) {
  const auto values = call.list("productId", "ids");
  if (values.empty()) return RestAnswer::error(400, "give \"productId\" or \"ids\"");
  std::vector<long long> ids;
  for (const auto &value : values) {
    const auto id = RestCall::idOf(value);
    if (!id || !catalogue_->book(call.store, *id)) {
      return RestAnswer::error(404, "no such book: " + RestCall::textOf(value).value_or("?"));
    }
    ids.push_back(*id);
  }
  const bool removed = db_->transaction([&] {
    for (long long id : ids) {
      if (db_->run("DELETE FROM wishlist WHERE customer_id = ? AND book_id = ?", {call.customer, id}) < 0) return false;
    }
    return true;
  });
  return removed ? RestAnswer::boolean(true) : RestAnswer::error(500, "the wish list could not be changed");
}

}  // namespace devstore
