// One row of a query's result, read by column name.
#ifndef DEVSTORE_SQL_ROW_H
#define DEVSTORE_SQL_ROW_H

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace devstore {

// Bytes that are no text, such as an image.
struct SqlBlob {
  std::string bytes;
};

using SqlValue = std::variant<std::nullptr_t, long long, double, std::string, SqlBlob>;

class SqlRow {
public:
  SqlRow(std::shared_ptr<const std::vector<std::string>> names, std::vector<SqlValue> values);

  // Conversions follow SQLite's: a NULL reads as "" or 0, a number as its text.
  std::string text(const char *column) const;
  long long integer(const char *column) const;
  double real(const char *column) const;
  bool isNull(const char *column) const;

private:
  const SqlValue &value(const char *column) const;

  std::shared_ptr<const std::vector<std::string>> names_;
  std::vector<SqlValue> values_;
};

}  // namespace devstore

#endif
