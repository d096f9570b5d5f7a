// The sort orders a list of books offers: its feed's facets of the group "Sorting".
#ifndef LUMENPRESS_APP_OPDS_SORT_MODEL_H
#define LUMENPRESS_APP_OPDS_SORT_MODEL_H

#include <QAbstractListModel>
#include <QString>

#include <memory>
#include <vector>

#include "opds/items_list.h"

class OpdsSortModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(bool isLoading READ isListLoading NOTIFY isLoadedChanged)

public:
  enum Roles { TextRole = Qt::UserRole + 1, UrlRole, ActiveRole };

  explicit OpdsSortModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

signals:
  void isLoadedChanged();

public slots:
  void setModelToUrl(QString url, int item_num);
  void setModelToUrl(QString url);
  void feedChanged(QString url);
  QString getUrlById(int id);
  QString getTitleById(int id);
  bool isListLoading() const;

private:
  std::shared_ptr<lumenpress::opds::ItemsList> list_;
  std::vector<std::shared_ptr<lumenpress::opds::OPDS::Link>> links_;
};

#endif
