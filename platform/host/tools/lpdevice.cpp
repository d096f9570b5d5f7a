// lpdevice: looks at and steers the PC's stand-in device, as the device shell would.
#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "device_path.h"
#include "hwconfig.h"
#include "panelkit.h"

namespace {

int usage() {
  std::fprintf(stderr,
               "usage: lpdevice info             the device's identity, language and network\n"
               "       lpdevice path DEVICE_PATH where a device path lies on this PC\n"
               "       lpdevice network up|down  switch the device's network\n"
               "       lpdevice journal          the tasks, books and requests the programs started\n"
               "       lpdevice config set FILE KEY VALUE\n"
               "                                 write a value into a configuration file of the device\n"
               "       lpdevice notifications    the notifications the programs left for the owner\n"
               "       lpdevice tags             the tags in the device's database, by mode (0 books, 1 device)\n");
  return 2;
}

int info() {
  std::printf("device root:      %s\n", lumenpress::platform::DeviceRoot().c_str());
  std::printf("model:            %s\n", GetDeviceModel());
  std::printf("serial number:    %s\n", GetSerialNumber());
  std::printf("software version: %s\n", GetSoftwareVersion());
  std::printf("language:         %s\n", currentLang());
  std::printf("audio:            %s\n", _device_has_audio() ? "yes" : "no");
  std::printf("network:          %s\n", (QueryNetwork() & 0xf00) ? "connected" : "down");
  return 0;
}

int network(const std::string &state) {
  const std::string flag = lumenpress::platform::DeviceRoot() + "/host/network_down";
  if (state == "down") {
    std::ofstream(flag).put('\n');
  } else if (state == "up") {
    std::filesystem::remove(flag);
  } else {
    return usage();
  }
  std::printf("network: %s\n", (QueryNetwork() & 0xf00) ? "connected" : "down");
  return 0;
}

int journal() {
  std::ifstream in(lumenpress::platform::DeviceRoot() + "/host/task_journal.jsonl");
  std::cout << in.rdbuf();
  return 0;
}

// Prints each row of a device database's query, its columns separated by tabs.
int printRows(const char *device_path, const char *sql) {
  const std::string path = lumenpress::platform::MapDevicePath(device_path);
  if (!std::filesystem::exists(path)) return 0;
  sqlite3 *db = nullptr;
  sqlite3_stmt *rows = nullptr;
  const bool opened = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK &&
                      sqlite3_prepare_v2(db, sql, -1, &rows, nullptr) == SQLITE_OK;
  while (opened && sqlite3_step(rows) == SQLITE_ROW) {
    for (int i = 0; i < sqlite3_column_count(rows); ++i) {
      std::printf("%s%s", i ? "\t" : "", reinterpret_cast<const char *>(sqlite3_column_text(rows, i)));
    }
    std::printf("\n");
  }
  if (!opened) std::fprintf(stderr, "lpdevice: cannot read %s: %s\n", path.c_str(), sqlite3_errmsg(db));
  sqlite3_finalize(rows);
  sqlite3_close(db);
  return opened ? 0 : 1;
}

// Through the configuration library, so the file is saved whole and with the mode the program gives it.
int configSet(const char *path, const char *key, const char *value) {
  lpconfig *cfg = OpenConfig(path, 1);
  if (cfg) WriteString(cfg, key, value);
  const char *stored = ReadString(cfg, key, nullptr);
  const bool saved = stored && std::strcmp(stored, value) == 0 && SaveConfig(cfg) == 0;
  CloseConfigNoSave(cfg);
  if (!saved) std::fprintf(stderr, "lpdevice: cannot write \"%s\" into %s\n", key, path);
  return saved ? 0 : 1;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) return usage();
  const std::string command = argv[1];
  if (command == "info") return info();
  if (command == "path" && argc == 3) {
    std::printf("%s\n", lumenpress::platform::MapDevicePath(argv[2]).c_str());
    return 0;
  }
  if (command == "network" && argc == 3) return network(argv[2]);
  if (command == "journal") return journal();
  if (command == "notifications") {
    return printRows("/mnt/ext1/system/notifications.sqlite",
                     "SELECT app_id, title, text, application, parameters FROM notifications ORDER BY id");
  }
  if (command == "tags")
    return printRows("/mnt/ext1/system/tags.sqlite", "SELECT mode, tag FROM tags ORDER BY mode, tag");
  if (command == "config" && argc == 6 && std::strcmp(argv[2], "set") == 0) return configSet(argv[3], argv[4], argv[5]);
  return usage();
}
