#include "opds/resource_downloader.h"

namespace lumenpress::opds {

// Books bought in the store land where the device's library looks for new files.
std::string ResourceDownloader::GetSyncFolder() {
  return "/mnt/ext1/Downloads";
}

}  // namespace lumenpress::opds
