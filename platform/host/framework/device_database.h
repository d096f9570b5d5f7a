// One statement on one of the device's SQLite files, opened for the call: the programs of the
// device share these files, and SQLite locks them between processes.
#ifndef LUMENPRESS_FRAMEWORK_DEVICE_DATABASE_H
#define LUMENPRESS_FRAMEWORK_DEVICE_DATABASE_H

#include <string>
#include <vector>

namespace lumenpress {

class DeviceDatabase {
public:
  // device_path is the file on the device; schema is run first, so a new device has the table.
  DeviceDatabase(const char *device_path, const char *schema);

  // Binds the texts, then the integers, to the statement's parameters in that order.
  bool run(const char *sql, const std::vector<std::string> &texts, const std::vector<int> &integers) const;

private:
  const char *device_path_;
  const char *schema_;
};

}  // namespace lumenpress

#endif
