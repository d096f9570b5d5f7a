// The download message bar over the window: one message at a time, the next when the owner has
// closed the one before.
#include <gtest/gtest.h>

#include <QQmlContext>
#include <QQuickItem>

#include "event_wait.h"
#include "message_meneger.h"
#include "store_window.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::StoreWindow;
using lumenpress::testing::tap;
using lumenpress::testing::waitUntil;

namespace {

class MessageBar : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(program_.started());
    messenger_ = qobject_cast<MessageMeneger *>(
        qmlContext(program_.window())->contextProperty(QStringLiteral("DownloadingMessenger")).value<QObject *>());
    ASSERT_NE(messenger_, nullptr);
    bar_ = program_.item("book_downloaded_dg");
    ASSERT_NE(bar_, nullptr);
  }

  QString shownTitle() { return program_.texts("downloadedTitle").value(0); }

  DevstoreProcess store_;
  StoreWindow program_{store_};
  MessageMeneger *messenger_ = nullptr;
  QQuickItem *bar_ = nullptr;
};

TEST_F(MessageBar, ShowsEachDownloadInTurnAndHidesWhenNoneWaits) {
  EXPECT_FALSE(bar_->isVisible());
  const std::string cover = store_.url("/covers/181.jpg");
  messenger_->addDownloadMessage("181", "Archive of Venice", cover, "ebook");
  messenger_->addDownloadMessage("253", "The Harbour's Archive", cover, "ebook");
  ASSERT_TRUE(waitUntil([&] { return shownTitle() == "Archive of Venice"; }));
  EXPECT_EQ(program_.texts("downloadedText").value(0), "The book has been downloaded.");

  tap(program_.item("downloadedNotNow"));
  EXPECT_EQ(shownTitle(), "The Harbour's Archive");
  tap(program_.item("downloadedNotNow"));
  EXPECT_FALSE(bar_->isVisible());

  // With nothing showing, a new download opens the bar again.
  messenger_->addDownloadMessage("217", "Border of Lviv", cover, "ebook");
  EXPECT_TRUE(waitUntil([&] { return shownTitle() == "Border of Lviv"; }));
}

}  // namespace
