// The catalogue list model against devstore's feeds and against lists built by hand.
#include "opds_list_data_model.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QSignalSpy>

#include "devstore_process.h"
#include "event_wait.h"
#include "feed_provider.h"

using lumenpress::opds::Feed;
using lumenpress::opds::ItemsList;
using lumenpress::opds::OPDS::Entry;
using lumenpress::opds::OPDS::Link;
using lumenpress::opds::OPDS::Price;
using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::waitUntil;

namespace {

QVariant role(const OpdsListDataModel &model, int row, int role) {
  return model.data(model.index(row), role);
}

// The model tester's complaints, but for the two that this model's contract makes on purpose.
QStringList &testerWarnings() {
  static QStringList warnings;
  return warnings;
}

void keepTesterWarnings(QtMsgType type, const QMessageLogContext &, const QString &message) {
  if (type != QtWarningMsg || !message.contains("FAIL")) return;
  // dataChanged reaches one row past the last one.
  if (message.contains("bottomRight")) return;
  // A page's rows are announced as inserted when they are already in the list.
  if (message.contains("c.oldSize + (end - start + 1)")) return;
  testerWarnings() << message;
}

std::shared_ptr<Entry> pricedEntry(const std::string &value, const std::string &oldValue, const std::string &code) {
  auto entry = std::make_shared<Entry>();
  entry->id = "book-" + value + code;
  entry->title = "Book";
  auto buy = std::make_shared<Link>();
  buy->type = Link::kBuy;
  auto *price = new Price;
  price->value = value;
  price->old_value = oldValue;
  price->currency_code = code;
  buy->prices.push_back(price);
  entry->links.push_back(buy);
  return entry;
}

std::shared_ptr<ItemsList> loadedList(const std::string &url, std::vector<std::shared_ptr<Entry>> entries) {
  auto list = std::make_shared<ItemsList>(url);
  auto feed = std::make_shared<Feed>();
  feed->entries = entries;
  list->Feeds().push_back(feed);
  list->entries = std::move(entries);
  return list;
}

class CatalogueModelTest : public ::testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(store_.running()); }

  void load(OpdsListDataModel *model, const std::string &path) {
    model->setModelToUrl(QString::fromStdString(store_.opds() + path));
    ASSERT_TRUE(waitUntil([&] { return !model->isListLoading() && model->getRowCount() > 0; })) << path;
  }

  DevstoreProcess store_;
};

TEST_F(CatalogueModelTest, HomeRowsCarrySubmodelsOfAtMostFourBooks) {
  qInstallMessageHandler(keepTesterWarnings);
  OpdsListDataModel home;
  QAbstractItemModelTester tester(&home, QAbstractItemModelTester::FailureReportingMode::Warning);
  home.setLoadSubmodels(true);
  load(&home, "home");
  const int firstPage = home.rowCount();
  home.loadNext();
  ASSERT_TRUE(waitUntil([&] { return home.rowCount() > firstPage && !home.isListLoading(); }));
  EXPECT_EQ(role(home, 0, OpdsListDataModel::ElemTypeRole).toInt(), 0);
  EXPECT_EQ(role(home, 1, OpdsListDataModel::ElemTypeRole).toInt(), 2);

  std::vector<OpdsListDataModel *> rows;
  for (int row = 0; row < home.rowCount(); ++row) {
    auto *submodel =
        qobject_cast<OpdsListDataModel *>(role(home, row, OpdsListDataModel::ElementModelRole).value<QObject *>());
    ASSERT_NE(submodel, nullptr);
    EXPECT_FALSE(role(home, row, OpdsListDataModel::BannerRole).toString().isEmpty());
    rows.push_back(submodel);
  }
  ASSERT_TRUE(waitUntil([&] {
    return std::all_of(rows.begin(), rows.end(),
                       [](auto *row) { return !row->isListLoading() && row->getRowCount() > 0; });
  }));
  const auto *popular = rows[1];
  EXPECT_EQ(popular->rowCount(), 4);
  EXPECT_EQ(popular->getRowCount(), 20);
  EXPECT_FALSE(role(*popular, 0, OpdsListDataModel::CoverUrlRole).toString().isEmpty());
  EXPECT_TRUE(role(*popular, 0, OpdsListDataModel::PriceWithCodeRole).toString().contains(QStringLiteral("€")) ||
              role(*popular, 0, OpdsListDataModel::PriceRole).toString() == "Free");
  EXPECT_TRUE(testerWarnings().isEmpty()) << testerWarnings().join("\n").toStdString();
}

TEST_F(CatalogueModelTest, AFirstPageResetsAndFurtherPagesInsert) {
  qInstallMessageHandler(keepTesterWarnings);
  OpdsListDataModel list;
  OpdsListDataModel limited;
  QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Warning);
  limited.setRowLimit(4);
  QSignalSpy inserted(&list, &QAbstractItemModel::rowsInserted);
  QSignalSpy limitedInserted(&limited, &QAbstractItemModel::rowsInserted);
  load(&list, "genre?id=crime");
  load(&limited, "genre?id=crime");
  EXPECT_EQ(inserted.count(), 0);
  EXPECT_EQ(list.rowCount(), 20);
  EXPECT_EQ(limited.rowCount(), 4);

  list.loadNext();
  ASSERT_TRUE(waitUntil([&] { return list.getRowCount() > 20 && !list.isListLoading(); }));
  ASSERT_EQ(inserted.count(), 1);
  EXPECT_EQ(inserted[0][1].toInt(), 20);
  EXPECT_EQ(inserted[0][2].toInt(), list.getRowCount() - 1);
  EXPECT_EQ(limitedInserted.count(), 0) << "the second page lies beyond a limit of four";
  EXPECT_EQ(limited.rowCount(), 4);

  while (!list.noNextPage()) {
    const int before = list.getRowCount();
    list.loadNext();
    waitUntil([&] { return list.noNextPage() || list.getRowCount() > before; });
  }
  EXPECT_EQ(QString::number(list.getRowCount()), list.totalResults());
  EXPECT_TRUE(testerWarnings().isEmpty()) << testerWarnings().join("\n").toStdString();
}

TEST_F(CatalogueModelTest, AStaleListIsFetchedAgain) {
  OpdsListDataModel list;
  load(&list, "list?name=new");
  store_.clearRequests();
  auto shared = FeedProvider::Instance().dataManager().GetList(list.getUrl().toStdString());
  shared->stale = true;
  list.feedChanged(list.getUrl());
  EXPECT_TRUE(list.isListLoading());
  ASSERT_TRUE(waitUntil([&] { return !list.isListLoading(); }));
  EXPECT_EQ(store_.requests().size(), 1u);
}

TEST(CatalogueModelPrices, FreeBelowOneCentAndSymbolsFromTheTable) {
  OpdsListDataModel model;
  auto audio = pricedEntry("2.5", "3.50", "USD");
  audio->type = "audio";
  model.setItemList(loadedList("http://127.0.0.1:1/prices",
                               {pricedEntry("0", "0", "EUR"), pricedEntry("0.01", "0", "USD"),
                                pricedEntry("2.5", "0", "EUR"), audio, pricedEntry("2.5", "4,10", "XYZ")}));
  ASSERT_EQ(model.rowCount(), 5);
  const auto text = [&](int row, int which) { return role(model, row, which).toString(); };
  EXPECT_EQ(text(0, OpdsListDataModel::PriceRole), "Free");
  EXPECT_EQ(text(1, OpdsListDataModel::PriceWithCodeRole), "Free");
  EXPECT_EQ(text(2, OpdsListDataModel::PriceRole), "2.50 EUR");
  EXPECT_EQ(text(2, OpdsListDataModel::PriceWithCodeRole), QStringLiteral("2.50 €"));
  EXPECT_EQ(text(2, OpdsListDataModel::OldPriceWithCodeRole), "");
  EXPECT_EQ(text(3, OpdsListDataModel::PriceWithCodeRole), "2.50 $");
  EXPECT_EQ(text(3, OpdsListDataModel::OldPriceWithCodeRole), "3.50 $");
  EXPECT_EQ(text(3, OpdsListDataModel::PriceOldRole), "3.50 USD");
  EXPECT_EQ(text(3, OpdsListDataModel::BookTypeRole), "AudioBook");
  EXPECT_EQ(text(4, OpdsListDataModel::PriceWithCodeRole), "2.50 ");
  EXPECT_EQ(text(4, OpdsListDataModel::OldPriceWithCodeRole), "4,10 ");
  EXPECT_TRUE(role(model, 4, OpdsListDataModel::InStockRole).toBool()) << "an empty stock is in stock";
  EXPECT_FALSE(role(model, 5, OpdsListDataModel::TitleRole).isValid());
  EXPECT_EQ(model.getListType(), "eBook");
}

// Descriptions are kept per row; a filter puts other entries at the rows without a reset.
TEST(CatalogueModelTexts, ADescriptionIsThePlainTextOfTheEntryNowAtItsRow) {
  auto summary = pricedEntry("1", "0", "EUR");
  summary->summary = "<p>A <b>bold</b> tale</p>";
  auto content = pricedEntry("2", "0", "EUR");
  content->content = std::make_shared<lumenpress::opds::OPDS::Content>();
  content->content->text = "Only &amp; content";
  const auto list = loadedList("http://127.0.0.1:1/texts", {summary, content, pricedEntry("3", "0", "EUR")});
  OpdsListDataModel model;
  model.setItemList(list);
  const auto description = [&](int row) { return role(model, row, OpdsListDataModel::DescriptionRole); };
  EXPECT_EQ(description(0).toString(), "A bold tale");
  EXPECT_EQ(description(1).toString(), "Only & content");
  EXPECT_FALSE(description(2).isValid());

  list->filter = "only";
  list->filtered_entries = {content};
  EXPECT_EQ(description(0).toString(), "Only & content");
}

}  // namespace
