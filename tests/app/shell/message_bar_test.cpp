// The download message bar over the window: one message at a time, the next when the owner has
// closed the one before.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include "devstore_process.h"
#include "event_wait.h"
#include "message_meneger.h"
#include "panelkit.h"
#include "store_manager.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::waitUntil;

namespace {

QQuickItem *find(QQuickItem *item, const QString &name) {
  if (item->objectName() == name) return item;
  for (QQuickItem *child : item->childItems()) {
    if (QQuickItem *found = find(child, name)) return found;
  }
  return nullptr;
}

class MessageBar : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store_.running());
    lpconfig *config = OpenConfig("/mnt/ext1/system/config/bookstore.cfg", 1);
    WriteString(config, "default_store", store_.url("/de_de/").c_str());
    ASSERT_EQ(CloseConfig(config), 0);
    ASSERT_EQ(manager_.Init(0, nullptr), 0);
    window_ = qobject_cast<QQuickWindow *>(QGuiApplication::topLevelWindows().value(0));
    ASSERT_NE(window_, nullptr);
    messenger_ = qobject_cast<MessageMeneger *>(
        qmlContext(window_)->contextProperty(QStringLiteral("DownloadingMessenger")).value<QObject *>());
    ASSERT_NE(messenger_, nullptr);
    bar_ = find(window_->contentItem(), QStringLiteral("book_downloaded_dg"));
    ASSERT_NE(bar_, nullptr);
  }

  QString shownTitle() {
    QQuickItem *title = find(window_->contentItem(), QStringLiteral("downloadedTitle"));
    return bar_->isVisible() && title ? title->property("text").toString() : QString();
  }

  void tap(const char *name) {
    QQuickItem *button = find(window_->contentItem(), QString::fromLatin1(name));
    ASSERT_NE(button, nullptr);
    const QPointF centre = button->mapToScene(QPointF(button->width() / 2, button->height() / 2));
    QTest::mouseClick(window_, Qt::LeftButton, Qt::NoModifier, centre.toPoint());
  }

  DevstoreProcess store_;
  StoreManager manager_;
  QQuickWindow *window_ = nullptr;
  MessageMeneger *messenger_ = nullptr;
  QQuickItem *bar_ = nullptr;
};

TEST_F(MessageBar, ShowsEachDownloadInTurnAndHidesWhenNoneWaits) {
  EXPECT_FALSE(bar_->isVisible());
  const std::string cover = store_.url("/covers/181.jpg");
  messenger_->addDownloadMessage("181", "Archive of Venice", cover, "ebook");
  messenger_->addDownloadMessage("253", "The Harbour's Archive", cover, "ebook");
  ASSERT_TRUE(waitUntil([&] { return shownTitle() == "Archive of Venice"; }));
  EXPECT_EQ(find(window_->contentItem(), "downloadedText")->property("text").toString(),
            "The book has been downloaded.");

  tap("downloadedNotNow");
  EXPECT_EQ(shownTitle(), "The Harbour's Archive");
  tap("downloadedNotNow");
  EXPECT_FALSE(bar_->isVisible());

  // With nothing showing, a new download opens the bar again.
  messenger_->addDownloadMessage("217", "Border of Lviv", cover, "ebook");
  EXPECT_TRUE(waitUntil([&] { return shownTitle() == "Border of Lviv"; }));
}

}  // namespace
