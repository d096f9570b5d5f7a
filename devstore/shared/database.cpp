#include "database.h"

#include <cstdio>
#include <iterator>
#include <string>

#include "migrations_sql.h"

namespace devstore {

bool Database::open(const std::string &path, std::string *error) {
  auto first = std::make_unique<SqlConnection>();
  if (!first->open(path, error) || !first->exec("PRAGMA journal_mode = WAL;", error) || !migrate(first.get(), error)) {
    return false;
  }
  std::lock_guard<std::mutex> lock(connections_mutex_);
  path_ = path;
  connections_[std::this_thread::get_id()] = std::move(first);
  return true;
}

// A folder made before the numbered steps has version 0; its tables match the first steps, which
// only create what is missing, so it is brought up to date like a new one.
bool Database::migrate(SqlConnection *db, std::string *error) {
  const auto rows = db->query("PRAGMA user_version;", {});
  const long long current = rows.empty() ? 0 : rows.front().integer("user_version");
  const int latest = std::end(kMigrations)[-1].version;
  if (current > latest) {
    *error = "the data folder was made by a newer devstore (schema " + std::to_string(current) + ", this one knows " +
             std::to_string(latest) + ")";
    return false;
  }
  for (const Migration &step : kMigrations) {
    if (step.version <= current) continue;
    const std::string script = std::string("BEGIN IMMEDIATE;\n") + step.sql +
                               "\nPRAGMA user_version = " + std::to_string(step.version) + ";\nCOMMIT;";
    if (!db->exec(script, error)) {
      std::string ignored;
      db->exec("ROLLBACK;", &ignored);
      *error = std::string(step.name) + ": " + *error;
      return false;
    }
  }
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
