// What the library knows of the last finished download.
#ifndef LUMENPRESS_OPDS_DOWNLOAD_INFO_H
#define LUMENPRESS_OPDS_DOWNLOAD_INFO_H

#include <string>

namespace lumenpress::opds {

class DownloadInfo {
public:
  int transfer_error = 0;
  // From Content-Disposition.
  std::string disposition_filename;
  // The raw Content-Type header.
  std::string content_type;
};

}  // namespace lumenpress::opds

#endif
