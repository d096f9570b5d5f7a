#include "feed_links_model.h"

#include "feed_provider.h"

using lumenpress::opds::DataManager;
using lumenpress::opds::OPDS::Link;

FeedLinksModel::FeedLinksModel(QObject *parent) : QAbstractListModel(parent) {
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &FeedLinksModel::feedChanged,
          Qt::QueuedConnection);
}

int FeedLinksModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(links_.size());
}

QVariant FeedLinksModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rowCount() || role != TitleRole) return QVariant();
  return QString::fromStdString(links_[static_cast<size_t>(index.row())]->title);
}

QHash<int, QByteArray> FeedLinksModel::roleNames() const {
  return {{TitleRole, "title"}};
}

bool FeedLinksModel::isListLoading() const {
  return list_ && list_->loading;
}

bool FeedLinksModel::isListLink(const Link &link) {
  switch (link.type) {
    case Link::kRelated:
    case Link::kFeatured:
    case Link::kCollection:
    case Link::kSortNew:
    case Link::kSortPopular:
    case Link::kRecommended:
      return !link.title.empty();
    case Link::kOther:
      return link.rel.find("acquisition") != std::string::npos;
    default:
      return false;
  }
}

void FeedLinksModel::setListUrl(QString url, int item_num) {
  list_ = FeedProvider::Instance().dataManager().GetListEx(url.toStdString(), false);
  item_num_ = item_num;
  emit isListLoadingChanged(isListLoading());
  feedChanged(QString::fromStdString(list_->url));
}

void FeedLinksModel::feedChanged(QString url) {
  if (!list_ || list_->url != url.toStdString()) return;
  beginResetModel();
  links_.clear();
  if (item_num_ >= 0 && static_cast<size_t>(item_num_) < list_->entries.size()) {
    for (const auto &link : list_->entries[static_cast<size_t>(item_num_)]->links) {
      if (isListLink(*link)) links_.push_back(link);
    }
  }
  emit isListLoadingChanged(isListLoading());
  endResetModel();
}

QString FeedLinksModel::getUrl(uint index) {
  if (!list_ || index >= links_.size()) return QString();
  return QString::fromStdString(DataManager::ResolveRelativeUrl(list_->url, links_[index]->href));
}
