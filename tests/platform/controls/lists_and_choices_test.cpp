// Long views turn pages instead of gliding, say where the owner is, and choices of several rows
// and of documents keep count.
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "control_scene.h"
#include "event_wait.h"

using lumenpress::testing::ControlScene;
using lumenpress::testing::waitUntil;

namespace {

TEST(Lists, PagesTurnWholeAndTheIndicatorAndAssistantFollow) {
  ControlScene scene(R"(
    CachedListView {
      id: list
      objectName: "list"
      width: 600; height: 500
      model: 100
      delegate: Rectangle { width: 600; height: 50; border.width: 1; Text { text: index } }
    }
    ScrollIndicator { objectName: "indicator"; y: 520; width: 300; target: list }
    ScrollAssistant { objectName: "assistant"; x: 650; width: 80; target: list })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QQuickItem *list = scene.item("list");
  QQuickItem *counter = scene.item("pageCounter");
  EXPECT_EQ(counter->property("text").toString(), "1 / 10");
  EXPECT_FALSE(scene.item("pageBack")->isEnabled());

  scene.tap(scene.item("pageForward"));
  EXPECT_DOUBLE_EQ(list->property("contentY").toDouble(), 500);
  EXPECT_EQ(counter->property("text").toString(), "2 / 10");
  EXPECT_TRUE(scene.item("pageBack")->isEnabled());

  // A swipe up of a fifth of the list turns one page, and the list stays where the page begins.
  QTest::mousePress(scene.window(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 400));
  for (int y = 390; y >= 300; y -= 10) QTest::mouseMove(scene.window(), QPoint(300, y), 10);
  QTest::mouseRelease(scene.window(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 300), 10);
  ASSERT_TRUE(waitUntil([&] { return !list->property("moving").toBool(); }));
  EXPECT_DOUBLE_EQ(list->property("contentY").toDouble(), 1000);

  QMetaObject::invokeMethod(list, "positionViewAtEnd");
  EXPECT_EQ(counter->property("text").toString(), "10 / 10");
  EXPECT_FALSE(scene.item("pageForward")->isEnabled());
  QMetaObject::invokeMethod(list, "pageForward");
  EXPECT_DOUBLE_EQ(list->property("contentY").toDouble(), 4500);
}

TEST(Lists, BreadcrumbsLeadBackToEveryStepButTheCurrentOne) {
  ControlScene scene(R"(
    Breadcrumbs { objectName: "crumbs"; width: 700; model: ["Home", "Crime", "Book"] })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QSignalSpy clicked(scene.item("crumbs"), SIGNAL(crumbClicked(int)));
  QList<QQuickItem *> crumbs = scene.items("crumb");
  ASSERT_EQ(crumbs.size(), 3);
  std::sort(crumbs.begin(), crumbs.end(),
            [](QQuickItem *a, QQuickItem *b) { return a->mapToScene(QPointF()).x() < b->mapToScene(QPointF()).x(); });
  scene.tap(crumbs[2]);
  scene.tap(crumbs[1]);
  ASSERT_EQ(clicked.count(), 1);
  EXPECT_EQ(clicked.front().front().toInt(), 1);
}

TEST(Choices, SelectionPanelCountsAndOffersAllOrNone) {
  ControlScene scene(R"(
    GroupSelectionPanel {
      objectName: "panel"; width: 758
      totalCount: 5; selectedCount: 2; actionText: "Buy"
      onSelectAll: selectedCount = totalCount
      onClearAll: selectedCount = 0
    })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QSignalSpy action(scene.item("panel"), SIGNAL(action()));
  EXPECT_EQ(scene.item("selectionCount")->property("text").toString(), "Selected: 2 / 5");
  scene.tap(scene.item("selectAll"));
  EXPECT_EQ(scene.item("selectionCount")->property("text").toString(), "Selected: 5 / 5");
  EXPECT_EQ(scene.item("selectAll")->property("text").toString(), "Clear all");
  scene.tap(scene.item("selectAll"));
  EXPECT_FALSE(scene.item("selectionAction")->isEnabled());
  scene.tap(scene.item("selectionAction"));
  EXPECT_EQ(action.count(), 0);
}

TEST(Choices, AgreeingToAllTicksEveryDocumentAndOneLessUnticksAll) {
  ControlScene scene(R"(
    ServiceAgreeList {
      objectName: "list"; width: 700
      model: ListModel {
        ListElement { title: "Terms of use"; checked: false; required: true }
        ListElement { title: "Privacy notice"; checked: false; required: true }
        ListElement { title: "Newsletter"; checked: true; required: false }
      }
    })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QQuickItem *list = scene.item("list");
  QSignalSpy toggled(list, SIGNAL(toggled(int, bool)));
  EXPECT_FALSE(list->property("requiredChecked").toBool());
  QQuickItem *all = scene.item("agreeAll");
  scene.tap(scene.items("agreeBox").value(0));
  EXPECT_TRUE(list->property("allChecked").toBool());
  EXPECT_TRUE(list->property("requiredChecked").toBool());
  EXPECT_EQ(toggled.count(), 2) << "only the documents that changed";

  QList<QQuickItem *> boxes = scene.items("agreeBox");
  ASSERT_EQ(boxes.size(), 4);
  std::sort(boxes.begin(), boxes.end(),
            [](QQuickItem *a, QQuickItem *b) { return a->mapToScene(QPointF()).y() < b->mapToScene(QPointF()).y(); });
  scene.tap(boxes[1]);
  EXPECT_FALSE(list->property("allChecked").toBool());
  EXPECT_FALSE(all->property("checked").toBool());
  EXPECT_FALSE(list->property("requiredChecked").toBool());
}

}  // namespace
