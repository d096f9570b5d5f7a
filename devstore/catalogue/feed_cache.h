// Public feeds as they were written, kept by store, path and query until the catalogue changes,
// so that most requests reach neither SQLite nor the feed writer.
#ifndef DEVSTORE_FEED_CACHE_H
#define DEVSTORE_FEED_CACHE_H

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "catalogue.h"

namespace devstore {

class FeedCache {
public:
  class Feed {
  public:
    std::string body;
    std::string tag;
  };

  explicit FeedCache(const Catalogue *catalogue);

  // The feed kept under `key`, or else the one `write` makes, kept when it makes one; null when
  // it makes none.
  std::shared_ptr<const Feed> find(const std::string &key, const std::function<std::optional<std::string>()> &write);

private:
  // Far more than the store's feeds; only an endless variety of searches reaches it.
  static constexpr size_t kLimit = 4096;

  const Catalogue *catalogue_;
  std::mutex mutex_;
  long long revision_ = -1;
  std::unordered_map<std::string, std::shared_ptr<const Feed>> feeds_;
};

}  // namespace devstore

#endif
