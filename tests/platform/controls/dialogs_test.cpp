// Dialogs ask and answer, messages show their text and close, and the module's one message
// replaces the one before.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QQmlEngine>
#include <QSignalSpy>

#include "control_scene.h"
#include "event_wait.h"

using lumenpress::testing::areaOf;
using lumenpress::testing::ControlScene;
using lumenpress::testing::darkPixels;
using lumenpress::testing::waitUntil;

namespace {

TEST(Dialogs, ConfirmationAsksAndEachAnswerClosesIt) {
  ControlScene scene(R"(
    property string answer: ""
    ConfirmationDialog {
      objectName: "dialog"
      title: "Sign out"
      text: "You will be signed out of your account."
      onAccepted: scene.answer += "yes"
      onRejected: scene.answer += "no"
    })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QQuickItem *dialog = scene.item("dialog");
  EXPECT_FALSE(dialog->isVisible());
  QMetaObject::invokeMethod(dialog, "open");
  ASSERT_TRUE(dialog->isVisible());
  EXPECT_GT(darkPixels(scene.grab(), areaOf(scene.item("dialogText"))), 100);
  EXPECT_EQ(scene.item("dialogAccept")->property("text").toString(), "Yes");
  scene.tap(scene.item("dialogAccept"));
  EXPECT_FALSE(dialog->isVisible());
  QMetaObject::invokeMethod(dialog, "open");
  scene.tap(scene.item("dialogReject"));
  QMetaObject::invokeMethod(dialog, "open");
  scene.tap(scene.item("dialogClose"));
  EXPECT_EQ(scene.root()->property("answer").toString(), "yesnono");
  EXPECT_FALSE(dialog->isVisible());
}

TEST(Dialogs, ModalDialogKeepsTouchesFromTheViewBelow) {
  ControlScene scene(R"(
    property int below: 0
    MouseArea { objectName: "view"; anchors.fill: parent; onClicked: scene.below += 1 }
    InfoMessage { objectName: "message"; text: "Saved" })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QMetaObject::invokeMethod(scene.item("message"), "open");
  QQuickItem corner;
  corner.setParentItem(scene.root());
  corner.setSize(QSizeF(10, 10));
  scene.tap(&corner);
  EXPECT_EQ(scene.root()->property("below").toInt(), 0);
  scene.tap(scene.item("dialogAccept"));
  EXPECT_FALSE(scene.item("message")->isVisible());
  scene.tap(&corner);
  EXPECT_EQ(scene.root()->property("below").toInt(), 1);
}

TEST(Dialogs, InfoMessageClosesByItselfAfterItsTimeout) {
  ControlScene scene(R"(InfoMessage { objectName: "message"; text: "Done"; timeout: 100 })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QQuickItem *message = scene.item("message");
  QSignalSpy closed(message, SIGNAL(closed()));
  QMetaObject::invokeMethod(message, "open");
  EXPECT_TRUE(waitUntil([&] { return closed.count() == 1; }));
  EXPECT_FALSE(message->isVisible());
}

TEST(Dialogs, GlobalMessageShowsOverTheWindowAndANewOneReplacesIt) {
  ControlScene scene(R"(
    function tell(text) { Global.openInfoMessage(text) })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  scene.window()->requestActivate();
  QMetaObject::invokeMethod(scene.root(), "tell", Q_ARG(QVariant, "First"));
  QMetaObject::invokeMethod(scene.root(), "tell", Q_ARG(QVariant, "Your password has been changed"));
  QList<QQuickItem *> shown;
  ASSERT_TRUE(waitUntil([&] {
    shown.clear();
    for (QQuickItem *child : scene.window()->contentItem()->childItems()) {
      if (child->property("destroyOnClose").toBool() && child->isVisible()) shown << child;
    }
    return shown.size() == 1;
  }));
  EXPECT_EQ(shown.front()->property("text").toString(), "Your password has been changed");
  QQuickItem *text = nullptr;
  for (QQuickItem *item : shown.front()->findChildren<QQuickItem *>()) {
    if (item->objectName() == "infoText") text = item;
  }
  ASSERT_NE(text, nullptr);
  EXPECT_GT(darkPixels(scene.grab(), areaOf(text)), 200);
}

}  // namespace
