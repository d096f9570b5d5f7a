#include "message_meneger.h"

#include <QDebug>

MessageMeneger::MessageMeneger(QObject *parent) : QObject(parent) {}

void MessageMeneger::getMessage() {
  is_showing_ = 1;
  if (!queue_.empty()) {
    const Message &front = queue_.front();
    id_ = front.id;
    title_ = front.title;
    cover_url_ = front.cover_url;
    book_type_ = front.book_type;
  }
  emit messageChanged();
}

void MessageMeneger::closeMessage() {
  is_showing_ = 0;
  if (!queue_.empty()) queue_.pop_front();
}

void MessageMeneger::addDownloadMessage(std::string book_id, std::string ttl, std::string cover_url,
                                        std::string book_type) {
  qDebug() << "ADD TEST MESSAGE" << book_id.c_str() << ttl.c_str() << cover_url.c_str();
  queue_.push_back({QString::fromStdString(book_id), QString::fromStdString(ttl), QString::fromStdString(cover_url),
                    QString::fromStdString(book_type)});
  if (is_showing_ == 0) emit messageAdded();
}
