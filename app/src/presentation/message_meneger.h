// The queue of download messages behind the screen's message bar: one shows at a time, the
// others wait until the screen has closed it and asks again.
#ifndef LUMENPRESS_APP_MESSAGE_MENEGER_H
#define LUMENPRESS_APP_MESSAGE_MENEGER_H

#include <QObject>
#include <QString>
#include <deque>
#include <string>

class MessageMeneger : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString id READ id NOTIFY messageChanged)
  Q_PROPERTY(QString title READ title NOTIFY messageChanged)
  Q_PROPERTY(QString cover_url READ coverUrl NOTIFY messageChanged)
  Q_PROPERTY(QString book_type READ bookType NOTIFY messageChanged)

public:
  explicit MessageMeneger(QObject *parent = nullptr);

  QString id() const { return id_; }
  QString title() const { return title_; }
  QString coverUrl() const { return cover_url_; }
  QString bookType() const { return book_type_; }

signals:
  // A message came while the bar was closed.
  void messageAdded();
  void messageChanged();

public slots:
  // The first waiting message becomes the current one and stays queued until closed;
  // with none waiting the current strings stay.
  void getMessage();
  void closeMessage();
  void addDownloadMessage(std::string book_id, std::string ttl, std::string cover_url, std::string book_type);

private:
  struct Message {
    QString id;
    QString title;
    QString cover_url;
    QString book_type;
  };

  QString id_;
  QString title_;
  QString cover_url_;
  QString book_type_;
  int is_showing_ = 0;
  std::deque<Message> queue_;
};

#endif
