// The places the user has been in the store, so that Back returns to the list, book, search
// or genre page before, at the same scroll position. Each place keeps its list alive, so going
// back shows it without a new request.
#ifndef LUMENPRESS_APP_NAVIGATION_HISTORY_H
#define LUMENPRESS_APP_NAVIGATION_HISTORY_H

#include <QObject>
#include <QString>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "opds/items_list.h"

class NavigationHistory : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString current_url READ currentUrl NOTIFY currentChanged)
  Q_PROPERTY(int item_num READ itemNum NOTIFY currentChanged)
  Q_PROPERTY(HistoryElementType itemType READ itemType NOTIFY currentChanged)

public:
  enum HistoryElementType {
    NavigateRoot = 0,
    NavigateItemsList,
    NavigateElement,
    NavigateGenreList,
    NavigateSearchList,
    NavigatePurchasedList
  };
  Q_ENUM(HistoryElementType)

  struct Element {
    std::shared_ptr<lumenpress::opds::ItemsList> list;
    std::string title;
    int item_num = 0;
    HistoryElementType type = NavigateRoot;
    int position = 0;
  };

  explicit NavigationHistory(QObject *parent = nullptr);

  QString currentUrl() const;
  int itemNum() const;
  HistoryElementType itemType() const;
  const std::vector<Element> &elements() const { return history_; }

signals:
  void currentChanged();

public slots:
  void feedChanged(QString url);
  void pushRootItem(QString url);
  void pushListData(QString url);
  void pushDetailedList(QString url, int item_num);
  void pushGenreList(QString url);
  void pushSearchList(QString url);
  void pushPurchasedList(QString url);
  int getLastElementType();
  QString getLastSearchUrl();
  void popItems(int num);
  int size();
  void log(QString s);
  void history();
  void setPosition(int position);
  int getPosition();

private:
  void push(const QString &url, HistoryElementType type);
  void mergeRepeatedBook();
  void forgetEmptySearch(const std::string &url);
  static std::string bookId(const Element &element);

  std::vector<Element> history_;
  QString current_url_;
  std::list<QString> search_urls_;
};

#endif
