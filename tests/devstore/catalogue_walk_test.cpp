// The catalogue library against devstore: the two sides of the catalogue contract, and every
// way a store can fail, seen through DataManager as the application sees them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>

#include "catalogue_recorder.h"
#include "device_path.h"
#include "devstore_process.h"
#include "opds/data_manager.h"

using namespace lumenpress::opds;
using lumenpress::testing::CatalogueRecorder;
using lumenpress::testing::DevstoreProcess;

namespace {

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

class CatalogueWalkTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store_.running());
    manager_.Init();
  }

  std::shared_ptr<ItemsList> load(const std::string &url) {
    auto list = manager_.GetList(url);
    EXPECT_TRUE(CatalogueRecorder::pump(manager_, [&] { return CatalogueRecorder::loaded(list); })) << url;
    return list;
  }

  // The error ListLoaded reported last for a URL; -100 when it reported none.
  int errorOf(const std::string &url) const {
    int error = -100;
    for (const auto &[code, list] : recorder_.lists) error = list->url == url ? code : error;
    return error;
  }

  std::string href(const std::shared_ptr<ItemsList> &list, const std::shared_ptr<OPDS::Link> &link) const {
    return link ? DataManager::ResolveRelativeUrl(list->url, link->href) : std::string();
  }

  void addFault(const std::string &path, const char *kind, int value) {
    Json::Value fault;
    fault["path"] = path;
    fault[kind] = value;
    ASSERT_TRUE(store_.addFault(fault));
  }

  DevstoreProcess store_;
  CatalogueRecorder recorder_;
  DataManager manager_{&recorder_};
};

TEST_F(CatalogueWalkTest, WalksHomeRowsAGenreABookAndASearch) {
  const auto home = load(store_.opds() + "home");
  while (manager_.LoadNextPage(home) == 0) {
    ASSERT_TRUE(CatalogueRecorder::pump(manager_, [&] { return CatalogueRecorder::loaded(home); }));
  }
  EXPECT_EQ(home->Feeds().size(), 2u);
  ASSERT_GE(home->entries.size(), 8u);
  for (const auto &row : home->entries) {
    EXPECT_EQ(row->id.rfind("tag:root:", 0), 0u) << row->id;
    const auto rowList = load(href(home, row->GetLinkByType(OPDS::Link::kSubsection)));
    EXPECT_FALSE(rowList->entries.empty()) << row->id;
  }

  const auto genres = load(store_.opds() + "genres");
  const auto genre = load(href(genres, genres->entries.front()->GetLinkByType(OPDS::Link::kCollection)));
  const int total = std::atoi(genre->Feeds().front()->total_results);
  while (manager_.LoadNextPage(genre) == 0) {
    ASSERT_TRUE(CatalogueRecorder::pump(manager_, [&] { return CatalogueRecorder::loaded(genre); }));
  }
  EXPECT_GT(genre->Feeds().size(), 1u);
  EXPECT_EQ(static_cast<int>(genre->entries.size()), total);

  const auto book = genre->entries.back();
  const auto item = load(href(genre, book->GetLinkByType(OPDS::Link::kSubsection)));
  ASSERT_EQ(item->entries.size(), 1u);
  EXPECT_EQ(item->entries[0]->id, book->id);
  const auto related = manager_.GetRelatedList(item, book->GetLinkByType(OPDS::Link::kRelated)->href);
  ASSERT_TRUE(CatalogueRecorder::pump(manager_, [&] { return CatalogueRecorder::loaded(related); }));
  EXPECT_FALSE(related->entries.empty());
  for (const auto &other : related->entries) EXPECT_NE(other->id, book->id);

  const auto results = manager_.GetSearchList(home, "silent");
  ASSERT_TRUE(CatalogueRecorder::pump(manager_, [&] { return CatalogueRecorder::loaded(results); }));
  ASSERT_FALSE(results->entries.empty());
  for (const auto &found : results->entries) {
    EXPECT_NE(lower(found->title + found->author->name).find("silent"), std::string::npos) << found->title;
  }
}

TEST_F(CatalogueWalkTest, StoreDataArrivesInTheCatalogueRecords) {
  std::set<std::string> seen;
  for (const char *path : {"list?name=popular", "list?name=popular&kind=audio", "list?name=weekseries",
                           "list?name=collections", "list?name=free", "genre?id=fiction&sort=price"}) {
    for (const auto &entry : load(store_.opds() + path)->entries) {
      if (entry->type == "audio") seen.insert("audio");
      if (entry->type == "grouped" && entry->grouped_img) seen.insert("grouped");
      if (entry->GetOldPrice() != "0") seen.insert("old price");
      if (entry->GetPriceDouble() == 0 && entry->GetLinkByType(OPDS::Link::kOpenAccess)) seen.insert("free");
      if (entry->GetLinkByType(OPDS::Link::kSample)) seen.insert("sample");
      const auto buy = entry->GetLinkByType(OPDS::Link::kBuy);
      if (buy && !buy->prices.empty() && !buy->prices[0].min_books.empty()) seen.insert("series");
      if (buy && !buy->indirect_acquisitions.empty() &&
          buy->indirect_acquisitions[0].mime == "application/vnd.adobe.adept+xml") {
        seen.insert("acsm");
      }
    }
  }
  EXPECT_EQ(seen, (std::set<std::string>{"audio", "grouped", "old price", "free", "sample", "series", "acsm"}));

  const auto item = load(store_.opds() + "item?id=43");
  ASSERT_EQ(item->entries.size(), 1u);
  const auto &book = *item->entries[0];
  EXPECT_EQ(book.in_stock, "0");
  EXPECT_EQ(book.language.size(), 3u);
  EXPECT_EQ(book.identifier.rfind("ISBN:978", 0), 0u);
  EXPECT_EQ(book.published.size(), 19u) << book.published;
  EXPECT_NE(book.summary.find("<p>"), std::string::npos);
  EXPECT_EQ(book.GetCurrencyCode(), "EUR");
  EXPECT_EQ(book.categories.size(), 1u);
  EXPECT_EQ(manager_.getCoverUrl(item, 0), store_.url("/covers/43.jpg"));
}

// Status, broken and dropped answers and time-outs are the fault matrix's; this is the store's own refusal.
TEST_F(CatalogueWalkTest, APurchasedFeedNeedsTheBearer) {
  const std::string url = store_.opds() + "purchased";
  const auto refused = load(url);
  EXPECT_EQ(errorOf(url), 401);
  EXPECT_TRUE(refused->entries.empty());
  manager_.AddBearerCredentials(store_.url("/de_de/"), store_.accessToken());
  manager_.DropListFromCache(url);
  EXPECT_EQ(load(url)->entries.size(), 4u);
}

TEST_F(CatalogueWalkTest, EveryGenreLoadsAtOnce) {
  const auto genres = load(store_.opds() + "genres");
  std::vector<std::shared_ptr<ItemsList>> lists;
  for (const auto &genre : genres->entries) {
    lists.push_back(manager_.GetList(href(genres, genre->GetLinkByType(OPDS::Link::kCollection))));
  }
  ASSERT_GE(lists.size(), 36u);
  ASSERT_TRUE(CatalogueRecorder::pump(manager_, [&] { return recorder_.lists.size() == lists.size() + 1; }));
  for (const auto &list : lists) {
    EXPECT_EQ(errorOf(list->url), 0) << list->url;
    EXPECT_FALSE(list->entries.empty()) << list->url;
  }
}

TEST_F(CatalogueWalkTest, DiskCacheRevalidatesAndOutlivesTheStore) {
  const std::string cache = "/mnt/ext1/system/cache/bookstore_feeds_cache";
  const std::string url = store_.opds() + "home";
  manager_.setDiskCache(cache, "bookstore_feeds_cache");
  const auto home = load(url);
  store_.clearRequests();
  manager_.ReloadList(url);
  ASSERT_TRUE(CatalogueRecorder::pump(manager_, [&] { return CatalogueRecorder::loaded(home); }));
  ASSERT_EQ(store_.requests().size(), 1u);
  EXPECT_EQ(store_.requests()[0]["status"].asInt(), 304);
  EXPECT_EQ(home->entries.size(), load(url)->entries.size());

  store_.stop();
  DataManager offline(&recorder_);
  offline.Init();
  offline.setDiskCache(cache, "bookstore_feeds_cache");
  const auto cached = offline.GetCachedListSync(url);
  ASSERT_TRUE(cached);
  EXPECT_EQ(cached->entries.size(), home->entries.size());
  EXPECT_EQ(cached->getTitle(), "Deutschland");
}

TEST_F(CatalogueWalkTest, DownloadsTakeTheStoresNameAndNeverLeaveHalfAFile) {
  manager_.AddBearerCredentials(store_.url("/de_de/"), store_.accessToken());
  manager_.SetFileDownloadFolder("/mnt/ext1/Downloads");
  const auto purchased = load(store_.opds() + "purchased");
  std::vector<std::shared_ptr<OPDS::Entry>> epubs;
  for (const auto &entry : purchased->entries) {
    const auto link = entry->GetLinkByType(OPDS::Link::kOpenAccess);
    if (link && link->mime == "application/epub+zip") epubs.push_back(entry);
  }
  ASSERT_GE(epubs.size(), 2u);

  manager_.DownloadBook(purchased, epubs[0], 0);
  ASSERT_TRUE(CatalogueRecorder::pump(manager_, [&] { return recorder_.books.size() == 1; }));
  ASSERT_EQ(recorder_.books[0].error, 0);
  const std::string name = manager_.GetLastDownloadInfo().disposition_filename;
  std::string title = epubs[0]->title;
  std::replace(title.begin(), title.end(), ':', '_');  // the store keeps names that FAT cards take
  EXPECT_EQ(name, title + ".epub");
  EXPECT_EQ(recorder_.books[0].file, "/mnt/ext1/Downloads/" + name);
  EXPECT_EQ(manager_.GetLastDownloadInfo().content_type, "application/epub+zip");

  addFault("/de_de/lpress/download", "truncate", 1);
  manager_.DownloadBook(purchased, epubs[1], 0);
  ASSERT_TRUE(CatalogueRecorder::pump(manager_, [&] { return recorder_.books.size() == 2; }));
  EXPECT_NE(recorder_.books[1].error, 0);
  std::vector<std::string> files;
  for (const auto &file :
       std::filesystem::directory_iterator(lumenpress::platform::MapDevicePath("/mnt/ext1/Downloads"))) {
    files.push_back(file.path().filename());
  }
  EXPECT_EQ(files, std::vector<std::string>{name});
}

}  // namespace
