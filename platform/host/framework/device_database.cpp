#include "device_database.h"

#include <sqlite3.h>

#include "device_path.h"
#include "lp_log.h"

namespace lumenpress {

namespace {

// Another process may hold the write lock for a moment.
constexpr int kBusyTimeoutMs = 5000;

bool bindAll(sqlite3_stmt *statement, const std::vector<std::string> &texts, const std::vector<int> &integers) {
  int index = 1;
  bool bound = true;
  for (const std::string &text : texts)
    bound = bound && sqlite3_bind_text(statement, index++, text.c_str(), -1, SQLITE_TRANSIENT) == SQLITE_OK;
  for (const int integer : integers) bound = bound && sqlite3_bind_int(statement, index++, integer) == SQLITE_OK;
  return bound;
}

}  // namespace

DeviceDatabase::DeviceDatabase(const char *device_path, const char *schema)
    : device_path_(device_path), schema_(schema) {}

bool DeviceDatabase::run(const char *sql, const std::vector<std::string> &texts,
                         const std::vector<int> &integers) const {
  sqlite3 *db = nullptr;
  const std::string path = platform::MapDevicePath(device_path_);
  bool done = sqlite3_open(path.c_str(), &db) == SQLITE_OK;
  if (done) {
    sqlite3_busy_timeout(db, kBusyTimeoutMs);
    done = sqlite3_exec(db, schema_, nullptr, nullptr, nullptr) == SQLITE_OK;
  }
  sqlite3_stmt *statement = nullptr;
  done = done && sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK;
  done = done && bindAll(statement, texts, integers) && sqlite3_step(statement) == SQLITE_DONE;
  if (!done) LP_LOG(LP_LOG_ERROR, "%s: %s", device_path_, db ? sqlite3_errmsg(db) : "cannot open");
  sqlite3_finalize(statement);
  sqlite3_close(db);
  return done;
}

}  // namespace lumenpress
