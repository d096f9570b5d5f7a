#include "sql_connection.h"

#include <sqlite3.h>

#include <cstdio>

namespace devstore {

namespace {

// Statements kept per connection; queries are built from a few parts, so this is never reached
// in normal use, only by an endless variety of searches.
constexpr size_t kStatementLimit = 256;

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

// Leaves a statement ready for its next use, and ends the read it holds open meanwhile.
class ResetAfterUse {
public:
  explicit ResetAfterUse(sqlite3_stmt *statement) : statement_(statement) {}
  ~ResetAfterUse() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
  }
  ResetAfterUse(const ResetAfterUse &) = delete;
  ResetAfterUse &operator=(const ResetAfterUse &) = delete;

private:
  sqlite3_stmt *statement_;
};

}  // namespace

SqlConnection::~SqlConnection() {
  forgetStatements();
  sqlite3_close(db_);
}

bool SqlConnection::open(const std::string &path, std::string *error) {
  // Each connection serves one thread at a time, so SQLite's own locking of it is not needed.
  if (sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr) !=
      SQLITE_OK) {
    *error = db_ ? sqlite3_errmsg(db_) : "out of memory";
    return false;
  }
  sqlite3_busy_timeout(db_, 5000);
  return exec("PRAGMA foreign_keys = ON;", error);
}

bool SqlConnection::exec(const std::string &script, std::string *error) {
  char *message = nullptr;
  if (sqlite3_exec(db_, script.c_str(), nullptr, nullptr, &message) == SQLITE_OK) return true;
  *error = message ? message : "unknown error";
  sqlite3_free(message);
  return false;
}

const SqlConnection::Prepared *SqlConnection::prepare(const std::string &sql, const std::vector<SqlValue> &params) {
  auto found = statements_.find(sql);
  if (found == statements_.end()) {
    if (statements_.size() >= kStatementLimit) forgetStatements();
    sqlite3_stmt *raw = nullptr;
    if (sqlite3_prepare_v3(db_, sql.c_str(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT, &raw, nullptr) !=
        SQLITE_OK) {
      std::fprintf(stderr, "devstore: SQL error %s in: %s\n", sqlite3_errmsg(db_), sql.c_str());
      return nullptr;
    }
    auto names = std::make_shared<std::vector<std::string>>();
    for (int i = 0; i < sqlite3_column_count(raw); ++i) names->emplace_back(sqlite3_column_name(raw, i));
    found = statements_.emplace(sql, Prepared{raw, std::move(names)}).first;
  }
  for (size_t i = 0; i < params.size(); ++i) bind(found->second.statement, static_cast<int>(i + 1), params[i]);
  return &found->second;
}

void SqlConnection::forgetStatements() {
  for (auto &[sql, prepared] : statements_) sqlite3_finalize(prepared.statement);
  statements_.clear();
}

std::vector<SqlRow> SqlConnection::query(const std::string &sql, const std::vector<SqlValue> &params) {
  std::vector<SqlRow> rows;
  const Prepared *prepared = prepare(sql, params);
  if (!prepared) return rows;
  sqlite3_stmt *statement = prepared->statement;
  const ResetAfterUse reset(statement);
  const int count = static_cast<int>(prepared->names->size());
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(statement)) == SQLITE_ROW) {
    std::vector<SqlValue> values;
    values.reserve(count);
    for (int i = 0; i < count; ++i) values.push_back(column(statement, i));
    rows.emplace_back(prepared->names, std::move(values));
  }
  if (step != SQLITE_DONE) std::fprintf(stderr, "devstore: SQL error %s in: %s\n", sqlite3_errmsg(db_), sql.c_str());
  return rows;
}

long long SqlConnection::run(const std::string &sql, const std::vector<SqlValue> &params) {
  const Prepared *prepared = prepare(sql, params);
  if (!prepared) return -1;
  const ResetAfterUse reset(prepared->statement);
  if (sqlite3_step(prepared->statement) != SQLITE_DONE) {
    std::fprintf(stderr, "devstore: SQL error %s in: %s\n", sqlite3_errmsg(db_), sql.c_str());
    return -1;
  }
  return sqlite3_last_insert_rowid(db_);
}

}  // namespace devstore
