// Worker side of a list: fetch a page (revalidating the disk copy), parse it, keep it on disk.
#ifndef LUMENPRESS_HOST_OPDS_FEED_LOADER_H
#define LUMENPRESS_HOST_OPDS_FEED_LOADER_H

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "credential_store.h"
#include "disk_cache.h"
#include "opds/feed.h"

namespace lumenpress::opds {

class FeedLoader {
public:
  // Errors besides HTTP statuses.
  static constexpr int kTransportError = -1;
  static constexpr int kParseError = -2;
  static constexpr int kNoSearchTemplate = -3;

  class Result {
  public:
    // 0, an HTTP status, or one of the errors above.
    int error = 0;
    std::shared_ptr<Feed> feed;
    std::string title;
  };

  FeedLoader(const CredentialStore &credentials, const DiskCache &cache);

  // With absolute_links, relative hrefs are resolved against the page's URL: for pages
  // that are not the list's own URL, such as later pages and search results.
  Result load(const std::string &url, const std::string &user_agent, bool absolute_links) const;
  // Results of a search link: an OpenSearch description or a template with {searchTerms}.
  Result search(const std::string &search_url, const std::string &text, const std::string &user_agent) const;
  // A page from the disk cache alone; false when there is none that parses.
  bool loadCached(const std::string &url, Result *result) const;

private:
  bool parse(const std::string &body, const std::string &url, bool absolute_links, Result *result) const;
  std::string searchTemplate(const std::string &description_url, const std::string &user_agent) const;

  const CredentialStore &credentials_;
  const DiskCache &cache_;
  mutable std::mutex templates_mutex_;
  mutable std::map<std::string, std::string> templates_;
};

}  // namespace lumenpress::opds

#endif
