#include "last_search_model.h"

#include "opds/last_search.h"

using lumenpress::opds::LastSearch;

LastSearchModel::LastSearchModel(QObject *parent) : QAbstractListModel(parent) {
  LastSearch::Instance().file_path = "/mnt/ext1/system/config/store_recent_search.txt";
}

int LastSearchModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(LastSearch::Instance().GetLastSearch().size());
}

QVariant LastSearchModel::data(const QModelIndex &index, int role) const {
  const auto terms = LastSearch::Instance().GetLastSearch();
  if (!index.isValid() || role != NameRole || static_cast<size_t>(index.row()) >= terms.size()) return QVariant();
  return QString::fromStdString(terms[static_cast<size_t>(index.row())]);
}

QHash<int, QByteArray> LastSearchModel::roleNames() const {
  return {{NameRole, "name"}};
}

void LastSearchModel::AddLastSearch(QString search_string) {
  beginResetModel();
  LastSearch::Instance().AddLastSearch(search_string.toStdString());
  endResetModel();
}
