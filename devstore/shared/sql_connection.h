// One SQLite connection, used by one thread at a time, with its statements prepared once and
// kept for the next call with the same SQL.
#ifndef DEVSTORE_SQL_CONNECTION_H
#define DEVSTORE_SQL_CONNECTION_H

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "sql_row.h"

struct sqlite3;
struct sqlite3_stmt;

namespace devstore {

class SqlConnection {
public:
  SqlConnection() = default;
  ~SqlConnection();
  SqlConnection(const SqlConnection &) = delete;
  SqlConnection &operator=(const SqlConnection &) = delete;

  bool open(const std::string &path, std::string *error);

  std::vector<SqlRow> query(const std::string &sql, const std::vector<SqlValue> &params);
  // The id of the row it inserted, or -1 on failure.
  long long run(const std::string &sql, const std::vector<SqlValue> &params);
  // Runs statements without parameters, such as a schema or BEGIN.
  bool exec(const std::string &script, std::string *error);

private:
  class Prepared {
  public:
    sqlite3_stmt *statement = nullptr;
    std::shared_ptr<const std::vector<std::string>> names;
  };

  // Bound to `params`; null when the SQL does not compile.
  const Prepared *prepare(const std::string &sql, const std::vector<SqlValue> &params);
  void forgetStatements();

  sqlite3 *db_ = nullptr;
  std::unordered_map<std::string, Prepared> statements_;
};

}  // namespace devstore

#endif
