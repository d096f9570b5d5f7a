// MessageMeneger: one download message shows at a time; the next waits until the screen asks.
#include "message_meneger.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace {

QString shown(const MessageMeneger &messenger) {
  return QStringList{messenger.property("id").toString(), messenger.property("title").toString(),
                     messenger.property("cover_url").toString(), messenger.property("book_type").toString()}
      .join('|');
}

}  // namespace

TEST(MessageMeneger, AMessageThatComesWhileOneShowsWaitsForTheScreenToAskAgain) {
  MessageMeneger messenger;
  QSignalSpy added(&messenger, &MessageMeneger::messageAdded);
  QSignalSpy changed(&messenger, &MessageMeneger::messageChanged);

  messenger.addDownloadMessage("11", "First", "http://store/11.jpg", "book");
  EXPECT_EQ(added.count(), 1);
  messenger.getMessage();
  EXPECT_EQ(shown(messenger), "11|First|http://store/11.jpg|book");
  messenger.addDownloadMessage("12", "Second", "http://store/12.jpg", "audio");
  EXPECT_EQ(added.count(), 1) << "the bar is showing";
  EXPECT_EQ(shown(messenger), "11|First|http://store/11.jpg|book");

  messenger.closeMessage();
  EXPECT_EQ(added.count(), 1) << "closing does not announce the next";
  messenger.getMessage();
  EXPECT_EQ(shown(messenger), "12|Second|http://store/12.jpg|audio");
  messenger.closeMessage();
  messenger.addDownloadMessage("13", "Third", "", "book");
  EXPECT_EQ(added.count(), 2);
  EXPECT_EQ(changed.count(), 2);
}

TEST(MessageMeneger, AskingWithNothingQueuedOnlySignalsAndKeepsTheOldStrings) {
  MessageMeneger messenger;
  QSignalSpy added(&messenger, &MessageMeneger::messageAdded);
  QSignalSpy changed(&messenger, &MessageMeneger::messageChanged);
  messenger.getMessage();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(shown(messenger), "|||");

  messenger.addDownloadMessage("11", "First", "http://store/11.jpg", "book");
  EXPECT_EQ(added.count(), 0) << "the bar counts as showing once asked";
  messenger.getMessage();
  messenger.closeMessage();
  messenger.closeMessage();
  messenger.getMessage();
  EXPECT_EQ(changed.count(), 3);
  EXPECT_EQ(shown(messenger), "11|First|http://store/11.jpg|book");
}
