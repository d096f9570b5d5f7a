// A book's page against devstore's feeds and against books built by hand: its rows, the buy
// text, and the price refresh before buying.
#include "book_detail_data_model.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "devstore_process.h"
#include "event_wait.h"
#include "feed_provider.h"
#include "panelkit.h"
#include "text_case.h"

using lumenpress::opds::Feed;
using lumenpress::opds::ItemsList;
using lumenpress::opds::OPDS::Entry;
using lumenpress::opds::OPDS::Link;
using lumenpress::opds::OPDS::Price;
using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::waitUntil;
using Model = BookDetailDataModel;

namespace {

QVariant role(int row, int role) {
  Model &model = Model::Instance();
  return model.data(model.index(row), role);
}

std::shared_ptr<ItemsList> loaded(const std::string &url) {
  auto list = FeedProvider::Instance().dataManager().GetList(url);
  waitUntil([&] { return !list->loading; });
  return list;
}

std::shared_ptr<ItemsList> handMade(const std::string &value, const std::string &old, const std::string &code) {
  auto entry = std::make_shared<Entry>();
  entry->id = "hand-" + value + old + code;
  entry->title = "Book";
  auto buy = std::make_shared<Link>();
  buy->type = Link::kBuy;
  auto *price = new Price;
  price->value = value;
  price->old_value = old;
  price->currency_code = code;
  buy->prices.push_back(price);
  entry->links.push_back(buy);
  auto list = std::make_shared<ItemsList>("http://store.test/lpress/opds/list");
  list->entries.push_back(entry);
  return list;
}

TEST(BookDetail, ABookAndItsRelatedListsFromTheStore) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  Model &model = Model::Instance();
  auto list = loaded(store.opds() + "item?id=5");
  ASSERT_EQ(list->entries.size(), 1u);
  QSignalSpy series(&model, &Model::openSeries);
  model.setEntry(list, 0);

  EXPECT_EQ(model.rowCount(), 2) << "the book and its one related list; its genres are no row";
  EXPECT_EQ(role(0, Model::BookIdRole).toString(), "5");
  EXPECT_EQ(role(0, Model::ElemTypeRole).toInt(), 0);
  EXPECT_EQ(role(1, Model::ElemTypeRole).toInt(), 1);
  EXPECT_EQ(role(1, Model::TitleRole).toString(), "Ähnliche Bücher");
  EXPECT_FALSE(role(1, Model::AuthorRole).isValid()) << "related rows carry no book";
  EXPECT_TRUE(role(0, Model::HasSampleRole).toBool());
  EXPECT_EQ(role(0, Model::PriceOldRole).toString(), "19.99");
  EXPECT_TRUE(role(0, Model::CoverUrlRole).toString().endsWith("/covers/5.jpg"));
  EXPECT_EQ(role(0, Model::NativeStoreRole).toString(), "err");
  ASSERT_EQ(series.count(), 1);
  EXPECT_TRUE(series[0][0].toString().endsWith("series?id=2"));
  EXPECT_EQ(model.GetMinimumBookInSeries(), "3");
  EXPECT_EQ(model.GetDiscountCount(), "15");
  ASSERT_NE(model.getGenresModel(), nullptr);
  auto *details = qobject_cast<BookDetailsModel *>(role(0, Model::DetailsSubmodelRole).value<QObject *>());
  ASSERT_NE(details, nullptr);
  EXPECT_EQ(details->rowCount(), 5);

  QSignalSpy reset(&model, &Model::modelReset);
  QSignalSpy repainted(&model, &Model::dataChanged);
  auto *related = role(1, Model::ElementModelRole).value<QObject *>();
  model.setEntry(list, 0);
  EXPECT_EQ(reset.count(), 0) << "the same book only repaints";
  EXPECT_EQ(repainted.count(), 1);
  EXPECT_EQ(role(1, Model::ElementModelRole).value<QObject *>(), related);
}

TEST(BookDetail, FreeBooksAndTheBuyText) {
  Model &model = Model::Instance();
  const std::string buy = GetLangText("@Buy");
  model.setEntry(handMade("0,00", "0", "EUR"), 0);
  EXPECT_TRUE(model.isFree()) << "a zero with a decimal comma";
  EXPECT_EQ(model.GenerateBuyStr().toStdString(), "<b>" + std::string(GetLangText("@free")) + "</b>");
  model.setEntry(handMade("0.01", "0", "EUR"), 0);
  EXPECT_FALSE(model.isFree());
  EXPECT_EQ(model.GenerateBuyStr().toStdString(), "<b>" + lumenpress::utilities::ToUpper(buy) + " € 0.01</b>");
  model.setEntry(handMade("3.5", "0", "XYZ"), 0);
  EXPECT_TRUE(model.GenerateBuyStr().contains("  3.50")) << "an unknown currency leaves two blanks";
  model.setEntry(handMade("3.5", "5.00", "EUR"), 0);
  EXPECT_EQ(model.GenerateBuyStr(), "<b></b><s><font color=\"gray\">€ 5.00</s></font><b> € 3.50</b>");
}

// devstore answers the book's feed with a text of the test's own making.
class PriceRefresh : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store.running());
    feed = store.get(store.opds() + "item?id=5").body;
    Model::Instance().setEntry(handMade("1.00", "0", "EUR"), 0);
    Model::Instance().setEntry(loaded(store.opds() + "item?id=5"), 0);
    // The related list lies below the same path; it is in before the book is answered anew.
    ASSERT_TRUE(waitUntil([&] {
      for (const Json::Value &request : store.requests()) {
        if (request["path"].asString() == "/de_de/lpress/opds/related") return true;
      }
      return false;
    }));
  }

  bool answerWith(const std::string &body) {
    Json::Value fault;
    fault["path"] = "/de_de/lpress/opds/item";
    fault["status"] = 200;
    fault["body"] = body;
    return store.addFault(fault);
  }

  DevstoreProcess store;
  std::string feed;
  QSignalSpy finished{&Model::Instance(), &Model::detailReloadFinished};
  QSignalSpy failed{&Model::Instance(), &Model::reloadFailed};
};

TEST_F(PriceRefresh, AnUnchangedPriceStands) {
  ASSERT_TRUE(answerWith(feed));
  Model::Instance().reloadList();
  EXPECT_TRUE(Model::Instance().detailReloading());
  ASSERT_TRUE(waitUntil([&] { return finished.count() == 1; }));
  EXPECT_TRUE(finished[0][0].toBool());
  EXPECT_FALSE(Model::Instance().detailReloading());
}

TEST_F(PriceRefresh, AChangedPriceIsShown) {
  std::string changed = feed;
  changed.replace(changed.find("lp:oldPrice=\"19.99\""), 19, "lp:oldPrice=\"24.99\"");
  changed.replace(changed.find(">12.99<"), 7, ">14.99<");
  ASSERT_TRUE(answerWith(changed));
  Model::Instance().reloadList();
  ASSERT_TRUE(waitUntil([&] { return finished.count() == 1; }));
  EXPECT_FALSE(finished[0][0].toBool());
  EXPECT_EQ(Model::Instance().getPrice(), "14.99");
  EXPECT_EQ(role(0, Model::PriceOldRole).toString(), "24.99");
}

TEST_F(PriceRefresh, AFeedWithoutTheBookFails) {
  ASSERT_TRUE(answerWith(feed.substr(0, feed.find("<entry>")) + "</feed>"));
  Model::Instance().reloadList();
  ASSERT_TRUE(waitUntil([&] { return failed.count() == 1; }));
  EXPECT_EQ(finished.count(), 0);
}

TEST(BookDetailReload, ABookWithoutItsOwnFeedIsNotReloaded) {
  Model &model = Model::Instance();
  model.setEntry(handMade("2.00", "0", "EUR"), 0);
  model.reloadList();
  EXPECT_FALSE(model.detailReloading());
}

TEST(BookDetailModel, RowsUnderTheModelTester) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  Model &model = Model::Instance();
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
  model.setEntry(loaded(store.opds() + "item?id=5"), 0);
  model.setEntryUrl(QString::fromStdString(store.opds() + "item?id=7"));
  ASSERT_TRUE(waitUntil([&] { return model.getBookId() == "7"; })) << "a book still loading arrives by its feed";
  EXPECT_EQ(model.rowCount(), 2);
}

}  // namespace
