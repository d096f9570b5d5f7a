// The featured lists of a feed, each row with its own list of books, so that a page can show
// a strip of books per featured list.
#ifndef LUMENPRESS_APP_FEATURED_LINKS_MODEL_H
#define LUMENPRESS_APP_FEATURED_LINKS_MODEL_H

#include <QAbstractListModel>
#include <QString>

#include <memory>
#include <vector>

#include "opds/items_list.h"
#include "opds_list_data_model.h"

class FeaturedLinksModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(bool isListLoading READ isListLoading NOTIFY isListLoadingChanged)

public:
  enum Roles { TitleRole = Qt::UserRole + 1, ElementModelRole };

  explicit FeaturedLinksModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  bool isListLoading() const;

signals:
  void isListLoadingChanged(bool isListLoading);

public slots:
  void setListUrl(QString url);
  void feedChanged(QString url);

private:
  std::shared_ptr<lumenpress::opds::ItemsList> list_;
  std::vector<std::shared_ptr<OpdsListDataModel>> models_;
  std::vector<QString> titles_;
};

#endif
