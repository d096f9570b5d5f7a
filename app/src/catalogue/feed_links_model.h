// The lists one entry leads to (related, featured, collections, new and popular, buying
// lists), as rows of titles; a book's page and a list's header show them.
#ifndef LUMENPRESS_APP_FEED_LINKS_MODEL_H
#define LUMENPRESS_APP_FEED_LINKS_MODEL_H

#include <QAbstractListModel>
#include <QString>

#include <memory>
#include <vector>

#include "opds/items_list.h"

class FeedLinksModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(bool isListLoading READ isListLoading NOTIFY isListLoadingChanged)

public:
  enum Roles { TitleRole = Qt::UserRole + 1 };

  explicit FeedLinksModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  bool isListLoading() const;
  // A link leads to a list worth a row; the buying lists must carry a title to show.
  static bool isListLink(const lumenpress::opds::OPDS::Link &link);

signals:
  void isListLoadingChanged(bool isListLoading);

public slots:
  void setListUrl(QString url, int item_num);
  void feedChanged(QString url);
  QString getUrl(uint index);

private:
  std::shared_ptr<lumenpress::opds::ItemsList> list_;
  std::vector<std::shared_ptr<lumenpress::opds::OPDS::Link>> links_;
  int item_num_ = -1;
};

#endif
