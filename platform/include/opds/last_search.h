// The user's recent search terms, kept in a file on the device.
#ifndef LUMENPRESS_OPDS_LAST_SEARCH_H
#define LUMENPRESS_OPDS_LAST_SEARCH_H

#include <string>
#include <vector>

namespace lumenpress::opds {

class LastSearch {
public:
  static LastSearch &Instance();

  // Newest first.
  std::vector<std::string> GetLastSearch();
  // Records a term and writes the file.
  void AddLastSearch(const std::string &term);

  std::string file_path = "/mnt/ext1/system/config/store_recent_search.txt";

private:
  LastSearch() = default;
};

}  // namespace lumenpress::opds

#endif
