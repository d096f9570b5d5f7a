// The user's recent search terms, newest first.
#ifndef LUMENPRESS_APP_LAST_SEARCH_MODEL_H
#define LUMENPRESS_APP_LAST_SEARCH_MODEL_H

#include <QAbstractListModel>

class LastSearchModel : public QAbstractListModel {
  Q_OBJECT

public:
  enum Roles { NameRole = Qt::UserRole + 1 };

  explicit LastSearchModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

public slots:
  void AddLastSearch(QString search_string);
};

#endif
