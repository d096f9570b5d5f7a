// Worker side of a download: the file is written under a temporary name and gets its
// real name only when complete, so a cut connection never leaves a file that looks whole.
#ifndef LUMENPRESS_HOST_OPDS_BOOK_DOWNLOADER_H
#define LUMENPRESS_HOST_OPDS_BOOK_DOWNLOADER_H

#include <string>

#include "credential_store.h"
#include "http_fetcher.h"
#include "opds/download_info.h"

namespace lumenpress::opds {

class BookDownloader {
public:
  class Result {
  public:
    // 0, an HTTP status, or FeedLoader's transport error.
    int error = 0;
    // Device path of the finished file.
    std::string file;
    DownloadInfo info;
  };

  explicit BookDownloader(const CredentialStore &credentials);

  // folder is a device path; fallback_name serves when neither the answer nor the URL names the file.
  Result download(const std::string &url, const std::string &folder, const std::string &fallback_name,
                  const std::string &user_agent, const HttpFetcher::Progress &progress) const;

  // The file name of a Content-Disposition header, without any folder; empty when it has none.
  static std::string dispositionName(const std::string &header);

private:
  const CredentialStore &credentials_;
};

}  // namespace lumenpress::opds

#endif
