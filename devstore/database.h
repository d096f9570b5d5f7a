// The storefront's SQLite database, shared by the server's threads: every statement runs
// under one lock, so a transaction is never interleaved with another thread's writes.
#ifndef DEVSTORE_DATABASE_H
#define DEVSTORE_DATABASE_H

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "sql_row.h"

struct sqlite3;

namespace devstore {

class Database {
public:
  Database() = default;
  ~Database();
  Database(const Database &) = delete;
  Database &operator=(const Database &) = delete;

  // Opens or creates the file and brings its schema up to date.
  bool open(const std::string &path, std::string *error);

  std::vector<SqlRow> query(const std::string &sql, const std::vector<SqlValue> &params = {}) const;
  // Runs one statement that returns no rows; the id of the row it inserted, or -1 on failure.
  long long run(const std::string &sql, const std::vector<SqlValue> &params = {});
  // Runs `work` inside one transaction; it is rolled back when `work` returns false.
  bool transaction(const std::function<bool()> &work);

private:
  bool exec(const std::string &script, std::string *error);

  sqlite3 *db_ = nullptr;
  mutable std::recursive_mutex mutex_;
};

}  // namespace devstore

#endif
