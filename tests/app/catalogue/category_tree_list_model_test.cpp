// The category tree on devstore's genre feed: the top level first, genres opened and closed
// below their parent, and the levels read from the entries' ids.
#include "category_tree_list_model.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>

#include "devstore_process.h"
#include "event_wait.h"
#include "opds_sort_model.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::waitUntil;
using Tree = CategoryTreeListModel;

namespace {

QString title(const Tree &tree, int row) {
  return tree.data(tree.index(row), Tree::TitleRole).toString();
}

TEST(CategoryTree, LevelsComeFromTheIds) {
  EXPECT_EQ(Tree::levelOf("urn:x:de_de:genres"), 0);
  EXPECT_EQ(Tree::levelOf("urn:x:de_de:genres::fiction"), 0);
  EXPECT_EQ(Tree::levelOf("urn:x:de_de:genres::fiction::literary"), 1);
  EXPECT_EQ(Tree::levelOf("urn:x:de_de:genres::a::b::c"), 2);
  EXPECT_EQ(Tree::levelOf("book-17"), 0);
}

TEST(CategoryTree, OpensAndClosesGenresBelowTheirParent) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  Tree tree;
  QAbstractItemModelTester tester(&tree, QAbstractItemModelTester::FailureReportingMode::QtTest);
  tree.setModelToUrl(QString::fromStdString(store.opds() + "genres"));
  ASSERT_TRUE(waitUntil([&] { return tree.rowCount() == 12; })) << "the top level only";
  EXPECT_TRUE(tree.data(tree.index(0), Tree::HasChildrenRole).toBool());
  const QString second = title(tree, 1);

  tree.openSublist(0);
  ASSERT_EQ(tree.rowCount(), 15);
  EXPECT_TRUE(tree.data(tree.index(0), Tree::OpenedRole).toBool());
  EXPECT_EQ(tree.data(tree.index(1), Tree::LevelRole).toInt(), 1);
  EXPECT_FALSE(tree.data(tree.index(1), Tree::HasChildrenRole).toBool()) << "devstore's genres go two levels deep";
  EXPECT_EQ(title(tree, 4), second);
  EXPECT_TRUE(tree.data(tree.index(1), Tree::UrlRole).toString().contains("genre?id="));

  tree.closeSublist(1);
  EXPECT_EQ(tree.rowCount(), 15) << "a genre without children stays";
  tree.closeSublist(0);
  EXPECT_EQ(tree.rowCount(), 12);
  EXPECT_FALSE(tree.data(tree.index(0), Tree::OpenedRole).toBool());
  tree.openSublist(99);
  EXPECT_EQ(tree.rowCount(), 12);
  EXPECT_EQ(tree.getListType(), "Ebook");
}

TEST(SortOrders, TheListsSortingFacets) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  OpdsSortModel sort;
  QAbstractItemModelTester tester(&sort, QAbstractItemModelTester::FailureReportingMode::QtTest);
  sort.setModelToUrl(QString::fromStdString(store.opds() + "list?name=popular"));
  ASSERT_TRUE(waitUntil([&] { return sort.rowCount() == 4; }));
  EXPECT_TRUE(sort.data(sort.index(0), OpdsSortModel::ActiveRole).toBool());
  EXPECT_EQ(sort.getUrlById(1).toStdString(), store.opds() + "list?name=popular&sort=new");
  EXPECT_EQ(sort.getUrlById(4), "");
  EXPECT_EQ(sort.getTitleById(-1), "");
}

}  // namespace
