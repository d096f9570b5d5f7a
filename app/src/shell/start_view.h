// The first view the screens show: the home page, a list or a book.
#ifndef LUMENPRESS_APP_START_VIEW_H
#define LUMENPRESS_APP_START_VIEW_H

#include <QObject>

class StartView : public QObject {
  Q_OBJECT

public:
  enum EnStartView { Home = 0, List = 1, Book = 2 };
  Q_ENUM(EnStartView)
};

#endif
