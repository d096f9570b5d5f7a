#include "framework/notifier.h"

#include <sqlite3.h>

#include <string>
#include <vector>

#include "device_path.h"
#include "lp_log.h"

namespace lumenpress {

namespace {

constexpr char kDatabase[] = "/mnt/ext1/system/notifications.sqlite";
// Another process may hold the write lock for a moment.
constexpr int kBusyTimeoutMs = 5000;

// One statement with text and integer parameters on a database opened for the call; SQLite
// locks the file between processes.
bool run(const char *sql, const std::vector<std::string> &texts, int app_id) {
  sqlite3 *db = nullptr;
  const std::string path = platform::MapDevicePath(kDatabase);
  bool done = sqlite3_open(path.c_str(), &db) == SQLITE_OK;
  if (done) {
    sqlite3_busy_timeout(db, kBusyTimeoutMs);
    done = sqlite3_exec(db,
                        "CREATE TABLE IF NOT EXISTS notifications (id INTEGER PRIMARY KEY, title TEXT NOT NULL,"
                        " text TEXT NOT NULL, application TEXT NOT NULL, parameters TEXT NOT NULL,"
                        " app_id INTEGER NOT NULL, added_at INTEGER NOT NULL DEFAULT (strftime('%s','now')))",
                        nullptr, nullptr, nullptr) == SQLITE_OK;
  }
  sqlite3_stmt *statement = nullptr;
  done = done && sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK;
  for (size_t i = 0; done && i < texts.size(); ++i) {
    sqlite3_bind_text(statement, static_cast<int>(i + 1), texts[i].c_str(), -1, SQLITE_TRANSIENT);
  }
  if (done) {
    sqlite3_bind_int(statement, static_cast<int>(texts.size() + 1), app_id);
    done = sqlite3_step(statement) == SQLITE_DONE;
  }
  if (!done) LP_LOG(LP_LOG_ERROR, "notifications: %s", db ? sqlite3_errmsg(db) : "cannot open");
  sqlite3_finalize(statement);
  sqlite3_close(db);
  return done;
}

}  // namespace

bool Notifier::Add(const std::string &title, const std::string &text, const std::string &application,
                   const std::string &parameters, int app_id) {
  return run("INSERT INTO notifications(title, text, application, parameters, app_id) VALUES (?, ?, ?, ?, ?)",
             {title, text, application, parameters}, app_id);
}

bool Notifier::Remove(int app_id) {
  return run("DELETE FROM notifications WHERE app_id = ?", {}, app_id);
}

bool Notifier::Remove(const std::string &title, const std::string &text, const std::string &application,
                      const std::string &parameters, int app_id) {
  return run(
      "DELETE FROM notifications WHERE title = ? AND text = ? AND application = ? AND parameters = ? AND"
      " app_id = ?",
      {title, text, application, parameters}, app_id);
}

}  // namespace lumenpress
