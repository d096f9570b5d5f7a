// The device's book database.
#ifndef LUMENPRESS_FRAMEWORK_DB_MANAGER_H
#define LUMENPRESS_FRAMEWORK_DB_MANAGER_H

#include <string>

namespace lumenpress::db {

class DbManager {
public:
  static DbManager &Instance();

  // Stores a property (such as the store's record of a sample) with a file.
  bool SetFileProp(const std::string &path, const std::string &property, const std::string &value);
  // Forgets the sample records of a book.
  void RemoveSamples(const std::string &book_id);

private:
  DbManager() = default;
};

}  // namespace lumenpress::db

#endif
