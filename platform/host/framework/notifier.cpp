#include "framework/notifier.h"

#include "device_database.h"

namespace lumenpress {

namespace {

const DeviceDatabase &notifications() {
  static const DeviceDatabase database(
      "/mnt/ext1/system/notifications.sqlite",
      "CREATE TABLE IF NOT EXISTS notifications (id INTEGER PRIMARY KEY, title TEXT NOT NULL, text TEXT NOT NULL,"
      " application TEXT NOT NULL, parameters TEXT NOT NULL, app_id INTEGER NOT NULL,"
      " added_at INTEGER NOT NULL DEFAULT (strftime('%s','now')))");
  return database;
}

}  // namespace

bool Notifier::Add(const std::string &title, const std::string &text, const std::string &application,
                   const std::string &parameters, int app_id) {
  return notifications().run(
      "INSERT INTO notifications(title, text, application, parameters, app_id) VALUES (?, ?, ?, ?, ?)",
      {title, text, application, parameters}, {app_id});
}

bool Notifier::Remove(int app_id) {
  return notifications().run("DELETE FROM notifications WHERE app_id = ?", {}, {app_id});
}

bool Notifier::Remove(const std::string &title, const std::string &text, const std::string &application,
                      const std::string &parameters, int app_id) {
  return notifications().run(
      "DELETE FROM notifications WHERE title = ? AND text = ? AND application = ? AND parameters = ? AND"
      " app_id = ?",
      {title, text, application, parameters}, {app_id});
}

}  // namespace lumenpress
