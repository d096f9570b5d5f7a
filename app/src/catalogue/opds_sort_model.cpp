#include "opds_sort_model.h"

#include <QDebug>

#include "facet_link_rows.h"
#include "feed_provider.h"

using lumenpress::opds::DataManager;
using lumenpress::opds::OPDS::Link;

OpdsSortModel::OpdsSortModel(QObject *parent) : QAbstractListModel(parent) {
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &OpdsSortModel::feedChanged,
          Qt::QueuedConnection);
}

int OpdsSortModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(links_.size());
}

QVariant OpdsSortModel::data(const QModelIndex &index, int role) const {
  return FacetLinkRows::data(links_, index, role);
}

QHash<int, QByteArray> OpdsSortModel::roleNames() const {
  return FacetLinkRows::roleNames();
}

void OpdsSortModel::setModelToUrl(QString url, int) {
  setModelToUrl(url);
}

void OpdsSortModel::setModelToUrl(QString url) {
  list_ = FeedProvider::Instance().dataManager().GetList(url.toStdString());
  qDebug() << " ------ Sorting Changed ";
  emit isLoadedChanged();
  feedChanged(QString::fromStdString(list_->url));
}

void OpdsSortModel::feedChanged(QString url) {
  if (!list_ || list_->url != url.toStdString()) return;
  beginResetModel();
  links_.clear();
  if (!list_->Feeds().empty()) {
    for (const auto &link : list_->Feeds().front()->links) {
      if (link->type == Link::kFacet && link->facet_group == "Sorting") links_.push_back(link);
    }
  }
  endResetModel();
  emit isLoadedChanged();
}

QString OpdsSortModel::getUrlById(int id) {
  if (!list_ || id < 0 || id >= rowCount()) return QString();
  return QString::fromStdString(DataManager::ResolveRelativeUrl(list_->url, links_[static_cast<size_t>(id)]->href));
}

QString OpdsSortModel::getTitleById(int id) {
  if (id < 0 || id >= rowCount()) return QString();
  return QString::fromStdString(links_[static_cast<size_t>(id)]->title);
}

bool OpdsSortModel::isListLoading() const {
  return list_ && list_->loading;
}
