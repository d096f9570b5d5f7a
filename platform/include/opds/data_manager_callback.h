// What the catalogue library reports back; every call arrives inside DataManager::ProcessResults().
#ifndef LUMENPRESS_OPDS_DATA_MANAGER_CALLBACK_H
#define LUMENPRESS_OPDS_DATA_MANAGER_CALLBACK_H

#include <memory>
#include <string>

#include "opds/items_list.h"

namespace lumenpress::opds {

class IDataManagerCallback {
public:
  // A list finished loading: 0, or 401, or another non-zero error.
  virtual void ListLoaded(int error, std::shared_ptr<ItemsList> list) = 0;
  // A download advanced to the given percentage.
  virtual void DownloadProgress(std::shared_ptr<OPDS::Entry> entry, int percent) = 0;
  // A download ended; file is where it was written.
  virtual void BookLoaded(int error, std::shared_ptr<OPDS::Entry> entry, const std::string &file) = 0;
  virtual ~IDataManagerCallback() = default;
};

}  // namespace lumenpress::opds

#endif
