// The navigation history as breadcrumbs: one title per place, oldest first.
#ifndef LUMENPRESS_APP_NAVIGATION_HISTORY_MODEL_H
#define LUMENPRESS_APP_NAVIGATION_HISTORY_MODEL_H

#include <QAbstractListModel>

#include "navigation_history.h"

class NavigationHistoryModel : public QAbstractListModel {
  Q_OBJECT

public:
  enum Roles { NameRole = Qt::UserRole + 1 };

  explicit NavigationHistoryModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = QModelIndex()) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

public slots:
  void SetHistory(NavigationHistory *history);
  void historyChanged();

private:
  QString title(const NavigationHistory::Element &element) const;

  NavigationHistory *history_ = nullptr;
};

#endif
