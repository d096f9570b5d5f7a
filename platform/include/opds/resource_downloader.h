// Where the device keeps the files it synchronises.
#ifndef LUMENPRESS_OPDS_RESOURCE_DOWNLOADER_H
#define LUMENPRESS_OPDS_RESOURCE_DOWNLOADER_H

#include <string>

namespace lumenpress::opds {

class ResourceDownloader {
public:
  static std::string GetSyncFolder();
};

}  // namespace lumenpress::opds

#endif
