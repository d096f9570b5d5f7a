// Any bytes as a catalogue page: parsed, put in a list as the catalogue library does, and read as the models
// read it.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "feed_parser.h"
#include "fuzz_device.h"
#include "opds/items_list.h"
#include "url_resolver.h"

using lumenpress::opds::Feed;
using lumenpress::opds::FeedParser;
using lumenpress::opds::ItemsList;
using lumenpress::opds::UrlResolver;

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  lumenpress::testing::FuzzDevice::Prepare();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  ItemsList list("http://127.0.0.1:8480/de_de/lpress/opds/home?page=2");
  auto feed = std::make_shared<Feed>();
  std::string title;
  std::string error;
  if (!FeedParser::Parse(reinterpret_cast<const char *>(data), size, list.url, feed.get(), &title, &error)) {
    // A page that does not parse leaves the feed as it was.
    if (!feed->entries.empty() || !feed->links.empty() || error.empty()) std::abort();
    return 0;
  }
  list.setTitle(title);
  list.Feeds().push_back(feed);
  list.entries.insert(list.entries.end(), feed->entries.begin(), feed->entries.end());
  for (const auto &link : feed->links) UrlResolver::Resolve(list.url, link->href);
  for (const auto &entry : list.entries) {
    for (const auto &link : entry->links) UrlResolver::Resolve(list.url, link->href);
    entry->GetGoLink();
    entry->GetPriceDouble();
    entry->GetOldPriceWithDot();
    entry->GetCurrencyCode();
  }
  return 0;
}
