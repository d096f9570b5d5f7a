// The storefront's SQLite database, shared by the server's threads: each thread has a
// connection of its own, in WAL mode, so readers never wait for one another; a transaction
// holds SQLite's write lock, and other writers wait for it.
#ifndef DEVSTORE_DATABASE_H
#define DEVSTORE_DATABASE_H

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "sql_connection.h"
#include "sql_row.h"

namespace devstore {

class Database {
public:
  Database() = default;
  Database(const Database &) = delete;
  Database &operator=(const Database &) = delete;

  // Opens or creates the file and applies the schema's steps it has not seen yet. Refuses a file
  // made by a newer devstore rather than work on tables it does not know.
  bool open(const std::string &path, std::string *error);

  std::vector<SqlRow> query(const std::string &sql, const std::vector<SqlValue> &params = {}) const;
  // Runs one statement that returns no rows; the id of the row it inserted, or -1 on failure.
  long long run(const std::string &sql, const std::vector<SqlValue> &params = {});
  // Runs `work` inside one transaction; it is rolled back when `work` returns false.
  bool transaction(const std::function<bool()> &work);

private:
  static bool migrate(SqlConnection *db, std::string *error);
  // The calling thread's connection, opened on its first call; null when it cannot be opened.
  SqlConnection *connection() const;

  std::string path_;
  mutable std::mutex connections_mutex_;
  mutable std::map<std::thread::id, std::unique_ptr<SqlConnection>> connections_;
};

}  // namespace devstore

#endif
