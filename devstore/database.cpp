#include "database.h"

#include <sqlite3.h>

#include <cstdio>
#include <memory>

#include "schema_sql.h"

namespace devstore {

namespace {

using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

void bind(sqlite3_stmt *statement, int index, const SqlValue &value) {
  if (const auto *i = std::get_if<long long>(&value)) {
    sqlite3_bind_int64(statement, index, *i);
  } else if (const auto *d = std::get_if<double>(&value)) {
    sqlite3_bind_double(statement, index, *d);
  } else if (const auto *s = std::get_if<std::string>(&value)) {
    sqlite3_bind_text(statement, index, s->data(), static_cast<int>(s->size()), SQLITE_TRANSIENT);
  } else if (const auto *b = std::get_if<SqlBlob>(&value)) {
    sqlite3_bind_blob(statement, index, b->bytes.data(), static_cast<int>(b->bytes.size()), SQLITE_TRANSIENT);
  } else {
    sqlite3_bind_null(statement, index);
  }
}

SqlValue column(sqlite3_stmt *statement, int index) {
  switch (sqlite3_column_type(statement, index)) {
    case SQLITE_INTEGER:
      return static_cast<long long>(sqlite3_column_int64(statement, index));
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, index);
    case SQLITE_NULL:
      return nullptr;
    case SQLITE_BLOB: {
      const auto *bytes = static_cast<const char *>(sqlite3_column_blob(statement, index));
      return SqlBlob{std::string(bytes, sqlite3_column_bytes(statement, index))};
    }
    default: {
      const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, index));
      return std::string(text, sqlite3_column_bytes(statement, index));
    }
  }
}

Statement prepare(sqlite3 *db, const std::string &sql, const std::vector<SqlValue> &params) {
  sqlite3_stmt *raw = nullptr;
  if (sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &raw, nullptr) != SQLITE_OK) {
    std::fprintf(stderr, "devstore: SQL error %s in: %s\n", sqlite3_errmsg(db), sql.c_str());
    return Statement(nullptr, sqlite3_finalize);
  }
  for (size_t i = 0; i < params.size(); ++i) bind(raw, static_cast<int>(i + 1), params[i]);
  return Statement(raw, sqlite3_finalize);
}

}  // namespace

Database::~Database() {
  sqlite3_close(db_);
}

bool Database::open(const std::string &path, std::string *error) {
  std::lock_guard<std::recursive_mutex> lock(mutex_);
  if (sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX,
                      nullptr) != SQLITE_OK) {
    *error = db_ ? sqlite3_errmsg(db_) : "out of memory";
    return false;
  }
  sqlite3_busy_timeout(db_, 5000);
  return exec("PRAGMA journal_mode = WAL;", error) && exec(kSchemaSql, error);
}

bool Database::exec(const std::string &script, std::string *error) {
  char *message = nullptr;
  if (sqlite3_exec(db_, script.c_str(), nullptr, nullptr, &message) == SQLITE_OK) return true;
  *error = message ? message : "unknown error";
  sqlite3_free(message);
  return false;
}

std::vector<SqlRow> Database::query(const std::string &sql, const std::vector<SqlValue> &params) const {
  std::lock_guard<std::recursive_mutex> lock(mutex_);
  std::vector<SqlRow> rows;
  const Statement statement = prepare(db_, sql, params);
  if (!statement) return rows;
  const int count = sqlite3_column_count(statement.get());
  auto names = std::make_shared<std::vector<std::string>>();
  for (int i = 0; i < count; ++i) names->emplace_back(sqlite3_column_name(statement.get(), i));
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(statement.get())) == SQLITE_ROW) {
    std::vector<SqlValue> values;
    values.reserve(count);
    for (int i = 0; i < count; ++i) values.push_back(column(statement.get(), i));
    rows.emplace_back(names, std::move(values));
  }
  if (step != SQLITE_DONE) std::fprintf(stderr, "devstore: SQL error %s in: %s\n", sqlite3_errmsg(db_), sql.c_str());
  return rows;
}

long long Database::run(const std::string &sql, const std::vector<SqlValue> &params) {
  std::lock_guard<std::recursive_mutex> lock(mutex_);
  const Statement statement = prepare(db_, sql, params);
  if (!statement) return -1;
  if (sqlite3_step(statement.get()) != SQLITE_DONE) {
    std::fprintf(stderr, "devstore: SQL error %s in: %s\n", sqlite3_errmsg(db_), sql.c_str());
    return -1;
  }
  return sqlite3_last_insert_rowid(db_);
}

bool Database::transaction(const std::function<bool()> &work) {
  std::lock_guard<std::recursive_mutex> lock(mutex_);
  std::string error;
  if (!exec("BEGIN IMMEDIATE;", &error)) {
    std::fprintf(stderr, "devstore: cannot begin a transaction: %s\n", error.c_str());
    return false;
  }
  if (work() && exec("COMMIT;", &error)) return true;
  exec("ROLLBACK;", &error);
  return false;
}

}  // namespace devstore
