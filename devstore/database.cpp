#include "database.h"

#include <cstdio>

#include "schema_sql.h"

namespace devstore {

bool Database::open(const std::string &path, std::string *error) {
  auto first = std::make_unique<SqlConnection>();
  if (!first->open(path, error) || !first->exec("PRAGMA journal_mode = WAL;", error) ||
      !first->exec(kSchemaSql, error)) {
    return false;
  }
  std::lock_guard<std::mutex> lock(connections_mutex_);
  path_ = path;
  connections_[std::this_thread::get_id()] = std::move(first);
  return true;
}

SqlConnection *Database::connection() const {
  std::lock_guard<std::mutex> lock(connections_mutex_);
  auto &connection = connections_[std::this_thread::get_id()];
  if (!connection) {
    auto opened = std::make_unique<SqlConnection>();
    std::string error;
    if (path_.empty() || !opened->open(path_, &error)) {
      std::fprintf(stderr, "devstore: cannot open the database: %s\n", error.c_str());
      return nullptr;
    }
    connection = std::move(opened);
  }
  return connection.get();
}

std::vector<SqlRow> Database::query(const std::string &sql, const std::vector<SqlValue> &params) const {
  SqlConnection *db = connection();
  return db ? db->query(sql, params) : std::vector<SqlRow>();
}

long long Database::run(const std::string &sql, const std::vector<SqlValue> &params) {
  SqlConnection *db = connection();
  return db ? db->run(sql, params) : -1;
}

bool Database::transaction(const std::function<bool()> &work) {
  SqlConnection *db = connection();
  if (!db) return false;
  std::string error;
  if (!db->exec("BEGIN IMMEDIATE;", &error)) {
    std::fprintf(stderr, "devstore: cannot begin a transaction: %s\n", error.c_str());
    return false;
  }
  if (work() && db->exec("COMMIT;", &error)) return true;
  db->exec("ROLLBACK;", &error);
  return false;
}

}  // namespace devstore
