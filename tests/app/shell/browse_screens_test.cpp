// Walking the catalogue through the screens, offscreen: a home row's list, a book of it, and
// back step by step to the home page.
#include <gtest/gtest.h>

#include <QAbstractItemModel>
#include <QQuickItem>

#include "event_wait.h"
#include "store_window.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::StoreWindow;
using lumenpress::testing::tap;
using lumenpress::testing::waitUntil;

namespace {

bool visible(const StoreWindow &window, const char *view) {
  return window.item(view)->isVisible();
}

TEST(BrowseScreens, FromAHomeRowToABookAndBackHome) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  StoreWindow window(store);
  ASSERT_TRUE(window.started());

  ASSERT_TRUE(waitUntil([&] { return !window.shown("rowTitle").isEmpty(); }));
  tap(window.shown("rowTitle").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "grid_view") && !window.texts("gridBookTitle").isEmpty(); }))
      << "the row's books, in the layout a new user has";
  const QString first = window.texts("gridBookTitle").front();
  QQuickItem *grid = window.shown("bookGrid").front();
  for (QQuickItem *price : window.shown("gridBookPrice")) {
    const QQuickItem *title = price->parentItem()->childItems().front();
    if (title->mapToItem(grid, QPointF(0, 0)).y() >= grid->height()) continue;
    EXPECT_LE(price->mapToItem(grid, QPointF(0, price->height())).y(), grid->height())
        << "a book on the page shows its price: " << title->property("text").toString().toStdString();
  }
  ASSERT_TRUE(waitUntil([&] { return !window.shown("showAsList").isEmpty(); }));
  tap(window.shown("showAsList").front());
  ASSERT_TRUE(
      waitUntil([&] { return visible(window, "acquisition_view") && !window.texts("listBookTitle").isEmpty(); }));
  EXPECT_EQ(window.texts("listBookTitle").front(), first);

  tap(window.shown("listBookTitle").front());
  ASSERT_TRUE(
      waitUntil([&] { return visible(window, "detail_view") && window.texts("detailTitle") == QStringList(first); }));
  auto *page = qobject_cast<QAbstractItemModel *>(window.published("DetailModel"));
  EXPECT_EQ(page->rowCount(), 2) << "the book and its related list, on the next page";
  EXPECT_TRUE(window.texts("detailPrice").front().contains("</b>")) << "the buy text";

  tap(window.shown("headerBack").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "acquisition_view"); }));
  EXPECT_FALSE(visible(window, "detail_view"));
  tap(window.shown("headerBack").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "home"); }));
  EXPECT_FALSE(visible(window, "acquisition_view"));
}

}  // namespace

namespace {

TEST(BrowseScreens, ASearchBySuggestionToABook) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  StoreWindow window(store);
  ASSERT_TRUE(window.started());
  ASSERT_TRUE(waitUntil([&] { return !window.shown("openSearch").isEmpty() && !window.shown("rowTitle").isEmpty(); }));
  tap(window.shown("openSearch").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "search_view") && !window.shown("searchField").isEmpty(); }));
  EXPECT_TRUE(window.shown("searchField").front()->hasActiveFocus()) << "the field takes what is typed at once";
  window.shown("searchField").front()->setProperty("text", "sil");
  QQuickItem *term = nullptr;
  ASSERT_TRUE(waitUntil([&] {
    for (QQuickItem *hint : window.shown("searchHint")) {
      if (hint->property("kind").toString() == "term") term = hint;
    }
    return term != nullptr;
  })) << "the store's suggestions, a word among them";
  tap(term);
  auto *books = window.published("AcquisitionListModel");
  ASSERT_TRUE(waitUntil([&] {
    return !books->property("isListLoading").toBool() && visible(window, "grid_view") &&
           !window.texts("gridBookTitle").isEmpty();
  })) << "the results of the word";
  QString results;
  QMetaObject::invokeMethod(books, "getUrl", Q_RETURN_ARG(QString, results));
  EXPECT_TRUE(results.contains("search?q=")) << results.toStdString();
  EXPECT_EQ(window.item("loadingCover")->parentItem()->height(), 0) << "one page of results promises no more";
  QString sorted;
  QMetaObject::invokeMethod(window.published("SortModel"), "getUrlById", Q_RETURN_ARG(QString, sorted), Q_ARG(int, 1));
  EXPECT_TRUE(sorted.contains("search?q=")) << "the results' own sort orders: " << sorted.toStdString();
  const QString first = window.texts("gridBookTitle").front();
  tap(window.shown("gridBookTitle").front());
  ASSERT_TRUE(
      waitUntil([&] { return visible(window, "detail_view") && window.texts("detailTitle") == QStringList(first); }));
  tap(window.shown("headerBack").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "grid_view"); })) << "back to the results";
}

}  // namespace

namespace {

TEST(BrowseScreens, TheCategoryTreeAndAnotherSortOrder) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  StoreWindow window(store);
  ASSERT_TRUE(window.started());
  ASSERT_TRUE(waitUntil([&] { return !window.shown("openCategories").isEmpty(); }));
  tap(window.shown("openCategories").front());
  ASSERT_TRUE(
      waitUntil([&] { return visible(window, "category_tree_view") && window.shown("category").size() == 12; }));
  tap(window.shown("categoryToggle").front());
  ASSERT_TRUE(waitUntil([&] { return window.shown("category").size() == 15; })) << "the first genre opened in place";
  tap(window.shown("category").at(1));
  ASSERT_TRUE(waitUntil([&] { return visible(window, "grid_view") && !window.texts("gridBookTitle").isEmpty(); }));

  ASSERT_TRUE(waitUntil([&] { return !window.shown("sortOrder").isEmpty(); })) << "the genre's sort orders";
  tap(window.shown("sortOrder").front());
  ASSERT_TRUE(waitUntil([&] { return window.shown("sortChoice").size() == 4; }));
  tap(window.shown("sortChoice").at(1));
  auto *books = window.published("AcquisitionListModel");
  QString sorted;
  ASSERT_TRUE(waitUntil([&] {
    QMetaObject::invokeMethod(books, "getUrl", Q_RETURN_ARG(QString, sorted));
    return sorted.contains("sort=new");
  })) << sorted.toStdString();

  tap(window.shown("headerBack").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "category_tree_view"); })) << "the sorted list replaced the list";
  tap(window.shown("headerBack").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "home"); }));
}

}  // namespace

namespace {

int firstShownRow(const StoreWindow &window) {
  QVariant row(-1);
  QQuickItem *list = window.shown("bookList").value(0);
  if (list) QMetaObject::invokeMethod(list->parentItem()->parentItem(), "currentPosition", Q_RETURN_ARG(QVariant, row));
  return row.toInt();
}

TEST(BrowseScreens, ABooksGenreAndBackToWhereTheListWasScrolled) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  StoreWindow window(store);
  ASSERT_TRUE(window.started());
  ASSERT_TRUE(waitUntil([&] { return window.shown("rowTitle").size() > 1; }));
  tap(window.shown("rowTitle").at(1));
  ASSERT_TRUE(
      waitUntil([&] { return !window.shown("showAsList").isEmpty() && !window.texts("gridBookTitle").isEmpty(); }));
  tap(window.shown("showAsList").front());
  ASSERT_TRUE(waitUntil([&] { return window.shown("listBookTitle").size() > 3; }));
  QQuickItem *list = window.shown("bookList").front();
  QMetaObject::invokeMethod(list, "positionViewAtIndex", Q_ARG(int, 6), Q_ARG(int, 0));
  ASSERT_TRUE(waitUntil([&] { return firstShownRow(window) == 6; }));

  // Rows a page ahead and behind are made too; the tap goes to one on the screen.
  for (QQuickItem *title : window.shown("listBookTitle")) {
    const qreal y = title->mapToItem(list, QPointF(0, 0)).y();
    if (y > 0 && y < list->height() / 2) {
      tap(title);
      break;
    }
  }
  QQuickItem *genre = nullptr;
  ASSERT_TRUE(waitUntil([&] {
    const QList<QQuickItem *> genres = window.shown("bookGenres");
    for (QQuickItem *button : window.shown("roundButton")) {
      if (!genres.isEmpty() && genres.front()->isAncestorOf(button)) genre = button;
    }
    return visible(window, "detail_view") && genre != nullptr;
  })) << "the book's genres";
  tap(genre);
  QString shownList;
  ASSERT_TRUE(waitUntil([&] {
    QMetaObject::invokeMethod(window.published("AcquisitionListModel"), "getUrl", Q_RETURN_ARG(QString, shownList));
    return visible(window, "acquisition_view") && shownList.contains("genre?id=");
  })) << shownList.toStdString();

  tap(window.shown("headerBack").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "detail_view"); }));
  tap(window.shown("headerBack").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "acquisition_view") && firstShownRow(window) == 6; }))
      << "the list scrolled as it was, not at its top: " << firstShownRow(window);
}

TEST(BrowseScreens, PopularGenresLeadToAGenreAndBack) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  StoreWindow window(store);
  ASSERT_TRUE(window.started());
  ASSERT_TRUE(waitUntil([&] { return !window.shown("openPopularGenres").isEmpty(); }));
  tap(window.shown("openPopularGenres").front());
  ASSERT_TRUE(waitUntil([&] { return window.shown("popularGenre").size() == 12; })) << "the top level only";
  tap(window.shown("popularGenre").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "grid_view") && !window.texts("gridBookTitle").isEmpty(); }));
  tap(window.shown("headerBack").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "popular_genres_view"); }));
  tap(window.shown("headerBack").front());
  ASSERT_TRUE(waitUntil([&] { return visible(window, "home"); }));
}

}  // namespace
