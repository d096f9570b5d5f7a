// The models of a feed's links on devstore's feeds: a book's lists, the featured lists of the
// home page, and a book's genres.
#include <gtest/gtest.h>
#include <QAbstractItemModelTester>

#include "devstore_process.h"
#include "event_wait.h"
#include "featured_links_model.h"
#include "feed_links_model.h"
#include "opds_genre_model.h"

using lumenpress::opds::OPDS::Link;
using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::waitUntil;

namespace {

QString at(const QAbstractItemModel &model, int row, int role = Qt::UserRole + 1) {
  return model.data(model.index(row, 0), role).toString();
}

class FeedLinks : public ::testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(store.running()); }
  QString feed(const std::string &path) const { return QString::fromStdString(store.opds() + path); }

  DevstoreProcess store;
};

TEST(FeedLinkKinds, ListsWithTitlesAndAcquisitionFeeds) {
  Link link;
  link.type = Link::kRelated;
  EXPECT_FALSE(FeedLinksModel::isListLink(link)) << "a row needs a title to show";
  link.title = "You may also like";
  EXPECT_TRUE(FeedLinksModel::isListLink(link));
  link.type = Link::kOther;
  link.rel = "urn:lumenpress:genres";
  EXPECT_FALSE(FeedLinksModel::isListLink(link));
  link.rel = "http://example.org/acquisition/loans";
  EXPECT_TRUE(FeedLinksModel::isListLink(link));
  link.type = Link::kSeries;
  EXPECT_FALSE(FeedLinksModel::isListLink(link));
}

TEST_F(FeedLinks, ABooksListsLeaveOutItsGenresAndAnEntryBeyondTheList) {
  FeedLinksModel links;
  QAbstractItemModelTester tester(&links, QAbstractItemModelTester::FailureReportingMode::QtTest);
  links.setListUrl(feed("list?name=popular"), 0);
  ASSERT_TRUE(waitUntil([&] { return links.rowCount() > 0; }));
  ASSERT_EQ(links.rowCount(), 1);
  EXPECT_EQ(at(links, 0), "Ähnliche Bücher");
  EXPECT_TRUE(links.getUrl(0).startsWith(feed("related?id="))) << links.getUrl(0).toStdString();
  EXPECT_EQ(links.getUrl(1), "");

  links.setListUrl(feed("list?name=popular"), 500);
  EXPECT_EQ(links.rowCount(), 0);
  links.setListUrl(feed("home"), -1);
  EXPECT_EQ(links.rowCount(), 0);
}

TEST_F(FeedLinks, EachFeaturedListLoadsItsBooks) {
  FeaturedLinksModel featured;
  QAbstractItemModelTester tester(&featured, QAbstractItemModelTester::FailureReportingMode::QtTest);
  featured.setListUrl(feed("home"));
  ASSERT_TRUE(waitUntil([&] { return featured.rowCount() > 0; }));
  ASSERT_EQ(featured.rowCount(), 1);
  EXPECT_EQ(at(featured, 0), "Bestseller");
  auto *books = qobject_cast<OpdsListDataModel *>(
      featured.data(featured.index(0), FeaturedLinksModel::ElementModelRole).value<QObject *>());
  ASSERT_NE(books, nullptr);
  EXPECT_TRUE(waitUntil([&] { return books->rowCount() > 0; }));
}

TEST_F(FeedLinks, ABooksGenresArriveWithItsList) {
  OpdsGenreModel &genres = *OpdsGenreModel::instance();
  QAbstractItemModelTester tester(&genres, QAbstractItemModelTester::FailureReportingMode::QtTest);
  genres.setGenreModelTo(feed("item?id=5"), 0);
  EXPECT_EQ(genres.rowCount(), 0) << "the book is not in yet";
  ASSERT_TRUE(waitUntil([&] { return genres.rowCount() > 0; }));
  EXPECT_FALSE(at(genres, 0).isEmpty());
  EXPECT_TRUE(genres.getUrl(0).startsWith(feed("genre?id="))) << genres.getUrl(0).toStdString();
  EXPECT_EQ(genres.getUrl(genres.rowCount()), "");

  genres.setGenreModelTo(feed("item?id=999999"), 0);
  EXPECT_TRUE(waitUntil([&] { return !genres.isListLoading(); }));
  EXPECT_EQ(genres.rowCount(), 0) << "a book that is not there has no genres";
}

}  // namespace
