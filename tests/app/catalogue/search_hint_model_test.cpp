// Suggestions asked of devstore as a term is typed, and the recent searches on the device.
#include "search_hint_model.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QThreadPool>

#include <fstream>

#include "device_path.h"
#include "devstore_process.h"
#include "event_wait.h"
#include "last_search_model.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::waitUntil;

namespace {

int suggestionRequests(const DevstoreProcess &store) {
  int asked = 0;
  for (const Json::Value &request : store.requests()) {
    if (request["path"].asString() == "/de_de/lpress/opds/suggest/") ++asked;
  }
  return asked;
}

TEST(SearchHints, EachChangedTermAsksAndAResetTermAsksNothing) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  SearchHintModel hints;
  QAbstractItemModelTester tester(&hints, QAbstractItemModelTester::FailureReportingMode::QtTest);
  hints.setBaseUrl(store.url("/de_de/"));

  hints.updateSearchStr("s");
  ASSERT_TRUE(waitUntil([&] { return hints.rowCount() > 0; }));
  hints.updateSearchStr("");
  EXPECT_EQ(hints.rowCount(), 0);
  hints.updateSearchStr("s");
  ASSERT_TRUE(waitUntil([&] { return hints.rowCount() > 0; }));
  EXPECT_EQ(suggestionRequests(store), 2) << "a letter typed, cleared and typed again";

  hints.resetSuggestion();
  EXPECT_EQ(hints.rowCount(), 0);
  hints.updateSearchStr("s");
  QThreadPool::globalInstance()->waitForDone();
  EXPECT_EQ(suggestionRequests(store), 2) << "the same term after a reset";
  EXPECT_EQ(hints.rowCount(), 0);

  hints.updateSearchStr("sil");
  ASSERT_TRUE(waitUntil([&] { return hints.rowCount() > 0; }));
  const QModelIndex first = hints.index(0);
  EXPECT_FALSE(hints.data(first, SearchHintModel::TitleRole).toString().isEmpty());
  EXPECT_TRUE(QStringList({"term", "product"}).contains(hints.data(first, SearchHintModel::TermRole).toString()));
  EXPECT_EQ(hints.addHtmpBackgroundColorTag("Silver and SILK"),
            "<span style=\"background-color: #c3c4c3\">Sil</span>ver and "
            "<span style=\"background-color: #c3c4c3\">SIL</span>K")
      << "every match marked, the text's case kept";
  EXPECT_EQ(hints.addHtmpBackgroundColorTag("Gold"), "Gold");
}

TEST(SearchHints, AFailedRequestShowsNothing) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  Json::Value fault;
  fault["path"] = "/de_de/lpress/opds/suggest/";
  fault["status"] = 500;
  ASSERT_TRUE(store.addFault(fault));
  SearchHintModel hints;
  hints.setBaseUrl(store.url("/de_de/"));
  QSignalSpy loading(&hints, &SearchHintModel::isLoadingChanged);
  hints.updateSearchStr("sil");
  ASSERT_TRUE(waitUntil([&] { return loading.count() == 2; }));
  EXPECT_EQ(hints.rowCount(), 0);
}

TEST(RecentSearches, KeptInTheDevicesFileNewestFirst) {
  LastSearchModel recent;
  QAbstractItemModelTester tester(&recent, QAbstractItemModelTester::FailureReportingMode::QtTest);
  recent.AddLastSearch("venice");
  recent.AddLastSearch("Kyiv");
  ASSERT_GE(recent.rowCount(), 2);
  EXPECT_EQ(recent.data(recent.index(0), LastSearchModel::NameRole).toString(), "Kyiv");
  std::ifstream file(lumenpress::platform::MapDevicePath("/mnt/ext1/system/config/store_recent_search.txt"));
  const std::string kept((std::istreambuf_iterator<char>(file)), {});
  EXPECT_NE(kept.find("venice"), std::string::npos);
  EXPECT_NE(kept.find("Kyiv"), std::string::npos);
}

}  // namespace
