#include "framework/lpdb_tags.h"

#include "device_database.h"

namespace {

const lumenpress::DeviceDatabase &tags() {
  static const lumenpress::DeviceDatabase database(
      "/mnt/ext1/system/tags.sqlite",
      "CREATE TABLE IF NOT EXISTS tags (mode INTEGER NOT NULL, tag TEXT NOT NULL, PRIMARY KEY (mode, tag))");
  return database;
}

}  // namespace

void LPDBTags::setMode(int mode) {
  mode_ = mode;
}

bool LPDBTags::addTag2(const std::string &tag) {
  return tags().run("INSERT OR IGNORE INTO tags(tag, mode) VALUES (?, ?)", {tag}, {mode_});
}

bool LPDBTags::removeTag2(const std::string &tag) {
  return tags().run("DELETE FROM tags WHERE tag = ? AND mode = ?", {tag}, {mode_});
}
