// Feeds kept on disk by URL, with the validators a conditional request needs,
// so that lists show after a restart without the network.
#ifndef LUMENPRESS_HOST_OPDS_DISK_CACHE_H
#define LUMENPRESS_HOST_OPDS_DISK_CACHE_H

#include <mutex>
#include <string>

namespace lumenpress::opds {

class DiskCache {
public:
  class Record {
  public:
    std::string body;
    std::string etag;
    std::string last_modified;
  };

  // An empty folder switches the cache off.
  void setFolder(const std::string &folder);
  bool load(const std::string &url, Record *record) const;
  // Written to a temporary file and renamed: a crash never leaves half a feed.
  void store(const std::string &url, const Record &record) const;
  void remove(const std::string &url) const;

private:
  std::string fileFor(const std::string &url) const;

  mutable std::mutex mutex_;
  std::string folder_;
};

}  // namespace lumenpress::opds

#endif
