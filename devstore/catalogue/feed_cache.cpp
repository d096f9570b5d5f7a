#include "feed_cache.h"

#include "entity_tag.h"

namespace devstore {

FeedCache::FeedCache(const Catalogue *catalogue) : catalogue_(catalogue) {}

// The revision is read before the feed is written, so a kept feed is never older than the
// revision it is kept under; a request that read an older revision than the cache's neither
// uses nor fills it.
std::shared_ptr<const FeedCache::Feed> FeedCache::find(const std::string &key,
                                                       const std::function<std::optional<std::string>()> &write) {
  const long long revision = catalogue_->revision();
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (revision > revision_) {
      feeds_.clear();
      revision_ = revision;
    }
    const auto kept = feeds_.find(key);
    if (revision == revision_ && kept != feeds_.end()) return kept->second;
  }
  auto body = write();
  if (!body) return nullptr;
  auto feed = std::make_shared<Feed>();
  feed->tag = EntityTag::of(*body);
  feed->body = std::move(*body);
  std::lock_guard<std::mutex> lock(mutex_);
  if (revision == revision_) {
    if (feeds_.size() >= kLimit) feeds_.clear();
    feeds_[key] = feed;
  }
  return feed;
}

}  // namespace devstore
