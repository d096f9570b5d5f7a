// MessageMeneger: one download message shows at a time; the next waits until the screen asks.
#include "message_meneger.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace {

QString shown(const MessageMeneger &messenger) {
  QStringList values;
  for (const char *name : {"id", "title", "cover_url", "book_type"}) values << messenger.property(name).toString();
  return values.join('|');
}

}  // namespace

TEST(MessageMeneger, AMessageThatComesWhileOneShowsWaitsForTheScreenToAskAgain) {
  MessageMeneger messenger;
  QSignalSpy added(&messenger, &MessageMeneger::messageAdded);
  QSignalSpy changed(&messenger, &MessageMeneger::messageChanged);
  messenger.getMessage();
  EXPECT_EQ(changed.count(), 1) << "asked with nothing queued";
  EXPECT_EQ(shown(messenger), "|||");
  messenger.closeMessage();

  messenger.addDownloadMessage("11", "First", "http://store/11.jpg", "book");
  messenger.getMessage();
  messenger.addDownloadMessage("12", "Second", "http://store/12.jpg", "audio");
  EXPECT_EQ(added.count(), 1) << "the bar is showing";
  EXPECT_EQ(shown(messenger), "11|First|http://store/11.jpg|book");
  messenger.closeMessage();
  EXPECT_EQ(added.count(), 1) << "closing does not announce the next";
  messenger.getMessage();
  EXPECT_EQ(shown(messenger), "12|Second|http://store/12.jpg|audio");

  messenger.closeMessage();
  messenger.getMessage();
  EXPECT_EQ(changed.count(), 4);
  EXPECT_EQ(shown(messenger), "12|Second|http://store/12.jpg|audio") << "the old strings stay";
  messenger.closeMessage();
  messenger.addDownloadMessage("13", "Third", "", "book");
  EXPECT_EQ(added.count(), 2);
}
