#include "sql_row.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace devstore {

SqlRow::SqlRow(std::shared_ptr<const std::vector<std::string>> names, std::vector<SqlValue> values)
    : names_(std::move(names)), values_(std::move(values)) {}

const SqlValue &SqlRow::value(const char *column) const {
  const auto found = std::find(names_->begin(), names_->end(), column);
  if (found == names_->end()) throw std::out_of_range(std::string("no column ") + column);
  return values_[found - names_->begin()];
}

std::string SqlRow::text(const char *column) const {
  const SqlValue &v = value(column);
  if (const auto *s = std::get_if<std::string>(&v)) return *s;
  if (const auto *b = std::get_if<SqlBlob>(&v)) return b->bytes;
  if (const auto *i = std::get_if<long long>(&v)) return std::to_string(*i);
  if (const auto *d = std::get_if<double>(&v)) {
    std::ostringstream out;
    out << *d;
    return out.str();
  }
  return {};
}

long long SqlRow::integer(const char *column) const {
  const SqlValue &v = value(column);
  if (const auto *i = std::get_if<long long>(&v)) return *i;
  if (const auto *d = std::get_if<double>(&v)) return static_cast<long long>(*d);
  if (const auto *s = std::get_if<std::string>(&v)) return std::strtoll(s->c_str(), nullptr, 10);
  return 0;
}

double SqlRow::real(const char *column) const {
  const SqlValue &v = value(column);
  if (const auto *d = std::get_if<double>(&v)) return *d;
  if (const auto *i = std::get_if<long long>(&v)) return static_cast<double>(*i);
  if (const auto *s = std::get_if<std::string>(&v)) return std::strtod(s->c_str(), nullptr);
  return 0;
}

bool SqlRow::isNull(const char *column) const {
  return std::holds_alternative<std::nullptr_t>(value(column));
}

}  // namespace devstore
