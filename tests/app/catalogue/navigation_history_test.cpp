// The history of places against devstore's feeds: pushes and pops, searches that replace one
// another or leave no trace, books opened twice, and the breadcrumbs.
#include "navigation_history.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "devstore_process.h"
#include "event_wait.h"
#include "feed_provider.h"
#include "navigation_history_model.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::waitUntil;
using History = NavigationHistory;

namespace {

class HistoryTest : public ::testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(store.running()); }

  QString url(const std::string &path) const { return QString::fromStdString(store.opds() + path); }

  bool loaded(const std::string &path) {
    auto list = FeedProvider::Instance().dataManager().GetList(store.opds() + path);
    return waitUntil([&] { return !list->loading; });
  }

  DevstoreProcess store;
  History history;
  QSignalSpy changed{&history, &History::currentChanged};
};

TEST_F(HistoryTest, BackAcrossListsBooksAndSearchesWithTheirPositions) {
  NavigationHistoryModel crumbs;
  QAbstractItemModelTester tester(&crumbs, QAbstractItemModelTester::FailureReportingMode::QtTest);
  crumbs.SetHistory(&history);
  ASSERT_TRUE(loaded("list?name=popular"));
  history.pushRootItem(url("home"));
  history.pushListData(url("list?name=popular"));
  history.setPosition(7);
  history.pushDetailedList(url("list?name=popular"), 2);
  history.pushGenreList(url("genres"));
  history.pushPurchasedList(url("purchased"));
  EXPECT_EQ(history.size(), 5);
  EXPECT_EQ(crumbs.rowCount(), 5);
  EXPECT_EQ(history.getLastElementType(), History::NavigatePurchasedList);

  history.popItems(2);
  EXPECT_EQ(history.itemType(), History::NavigateElement);
  EXPECT_EQ(history.itemNum(), 2);
  EXPECT_EQ(crumbs.data(crumbs.index(2), NavigationHistoryModel::NameRole).toString().toStdString(),
            FeedProvider::Instance().dataManager().GetList(store.opds() + "list?name=popular")->entries[2]->title);
  history.popItems(1);
  EXPECT_EQ(history.itemType(), History::NavigateItemsList);
  EXPECT_EQ(history.getPosition(), 7) << "the list's place is where the user left it";
  EXPECT_EQ(crumbs.data(crumbs.index(1), NavigationHistoryModel::NameRole).toString(), "Beliebt");

  const int before = changed.count();
  history.popItems(0);
  EXPECT_EQ(changed.count(), before);
  history.popItems(10);
  EXPECT_EQ(history.size(), 0);
  EXPECT_EQ(history.getPosition(), 0);
}

TEST_F(HistoryTest, SearchesReplaceOneAnotherAndAnEmptyOneLeavesNoTrace) {
  history.pushRootItem(url("home"));
  history.pushSearchList(url("opensearch/search?q=sea"));
  const int before = changed.count();
  history.pushSearchList(url("opensearch/search?q=sea"));
  EXPECT_EQ(changed.count(), before) << "the same search twice";
  history.pushSearchList(url("opensearch/search?q=silver"));
  EXPECT_EQ(history.size(), 2) << "a new search takes the place of the last";

  Json::Value fault;
  fault["path"] = "/de_de/lpress/opds/opensearch/search";
  fault["status"] = 200;
  fault["body"] = "<feed xmlns=\"http://www.w3.org/2005/Atom\"><id>none</id><title>Search</title></feed>";
  fault["count"] = 5;
  ASSERT_TRUE(store.addFault(fault));
  history.pushSearchList(url("opensearch/search?q=zzzzqqq"));
  auto empty = FeedProvider::Instance().dataManager().GetList(store.opds() + "opensearch/search?q=zzzzqqq");
  ASSERT_TRUE(waitUntil([&] { return !empty->loading; }));
  ASSERT_TRUE(empty->entries.empty());
  history.feedChanged(url("opensearch/search?q=zzzzqqq"));
  EXPECT_EQ(history.size(), 1);
  EXPECT_EQ(history.itemType(), History::NavigateRoot);
}

TEST_F(HistoryTest, RecentSearchesKeepTheNewestTwenty) {
  for (int i = 0; i < 21; ++i) history.feedChanged(url("opensearch/search?q=term" + std::to_string(i)));
  EXPECT_EQ(history.getLastSearchUrl(), url("opensearch/search?q=term20"));
  EXPECT_EQ(History().getLastSearchUrl(), "");
}

TEST_F(HistoryTest, TheSameBookTwiceIsOnePlace) {
  ASSERT_TRUE(loaded("list?name=popular"));
  ASSERT_TRUE(loaded(
      "item?id=" + FeedProvider::Instance().dataManager().GetList(store.opds() + "list?name=popular")->entries[0]->id));
  history.pushDetailedList(url("list?name=popular"), 0);
  const int before = changed.count();
  history.pushDetailedList(url("list?name=popular"), 0);
  EXPECT_EQ(history.size(), 1);
  EXPECT_EQ(changed.count(), before) << "not even a signal";
}

}  // namespace
