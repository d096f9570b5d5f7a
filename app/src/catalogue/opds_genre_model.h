// The genres of one book, from the book's "itemgenres" list; the book's page shows them and
// opens a genre's books from them.
#ifndef LUMENPRESS_APP_OPDS_GENRE_MODEL_H
#define LUMENPRESS_APP_OPDS_GENRE_MODEL_H

#include <QAbstractListModel>
#include <QString>

#include <memory>

#include "opds/items_list.h"

class OpdsGenreModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(bool isListLoading READ isListLoading NOTIFY isListLoadingChanged)

public:
  enum Roles { TitleRole = Qt::UserRole + 1 };

  static OpdsGenreModel *instance();

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  bool isListLoading() const;

signals:
  void isListLoadingChanged(bool isListLoading);

public slots:
  void feedChanged(QString url);
  void setGenreModelTo(QString url, int num);
  void handleStoresChanged(QString url);
  QString getCurrentStore();
  QString getUrl(int index);

private:
  explicit OpdsGenreModel(QObject *parent = nullptr);
  // The book's list may still be loading; its genres are looked up again when it arrives.
  void followGenreLink();
  std::shared_ptr<lumenpress::opds::OPDS::Link> genreLink(int index) const;

  std::shared_ptr<lumenpress::opds::ItemsList> book_list_;
  int item_num_ = -1;
  std::shared_ptr<lumenpress::opds::ItemsList> list_;
  QString store_url_;
};

#endif
