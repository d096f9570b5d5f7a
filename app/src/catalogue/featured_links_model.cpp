#include "featured_links_model.h"

#include "feed_provider.h"

using lumenpress::opds::DataManager;
using lumenpress::opds::OPDS::Link;

FeaturedLinksModel::FeaturedLinksModel(QObject *parent) : QAbstractListModel(parent) {
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &FeaturedLinksModel::feedChanged,
          Qt::QueuedConnection);
}

int FeaturedLinksModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(models_.size());
}

QVariant FeaturedLinksModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return QVariant();
  const auto row = static_cast<size_t>(index.row());
  switch (role) {
    case TitleRole:
      return titles_[row];
    case ElementModelRole:
      return QVariant::fromValue<QObject *>(models_[row].get());
    default:
      return QVariant();
  }
}

QHash<int, QByteArray> FeaturedLinksModel::roleNames() const {
  return {{TitleRole, "title"}, {ElementModelRole, "element_model"}};
}

bool FeaturedLinksModel::isListLoading() const {
  return list_ && list_->loading;
}

void FeaturedLinksModel::setListUrl(QString url) {
  list_ = FeedProvider::Instance().dataManager().GetList(url.toStdString());
  emit isListLoadingChanged(isListLoading());
  feedChanged(QString::fromStdString(list_->url));
}

// Every status of the feed makes the rows anew: the links may differ from page to page.
void FeaturedLinksModel::feedChanged(QString url) {
  if (!list_ || list_->url != url.toStdString()) return;
  beginResetModel();
  models_.clear();
  titles_.clear();
  if (!list_->Feeds().empty()) {
    for (const auto &link : list_->Feeds().front()->links) {
      if (link->type != Link::kFeatured) continue;
      auto model = std::make_shared<OpdsListDataModel>();
      models_.push_back(model);
      titles_.push_back(QString::fromStdString(link->title));
      model->setModelToUrl(QString::fromStdString(DataManager::ResolveRelativeUrl(list_->url, link->href)));
      emit model->isListLoadingChanged(model->isListLoading());
    }
  }
  endResetModel();
}
