#include "opds_genre_model.h"

#include "feed_provider.h"

using lumenpress::opds::DataManager;
using lumenpress::opds::OPDS::Link;

OpdsGenreModel::OpdsGenreModel(QObject *parent) : QAbstractListModel(parent) {
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &OpdsGenreModel::feedChanged,
          Qt::QueuedConnection);
}

OpdsGenreModel *OpdsGenreModel::instance() {
  static OpdsGenreModel model;
  return &model;
}

int OpdsGenreModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() || !list_ ? 0 : static_cast<int>(list_->entries.size());
}

QVariant OpdsGenreModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rowCount() || role != TitleRole) return QVariant();
  const auto link = genreLink(index.row());
  return link ? QString::fromStdString(link->title) : QString();
}

QHash<int, QByteArray> OpdsGenreModel::roleNames() const {
  return {{TitleRole, "title"}};
}

bool OpdsGenreModel::isListLoading() const {
  return list_ ? list_->loading : book_list_ && book_list_->loading;
}

void OpdsGenreModel::setGenreModelTo(QString url, int num) {
  emit isListLoadingChanged(true);
  beginResetModel();
  book_list_ = FeedProvider::Instance().dataManager().GetList(url.toStdString());
  item_num_ = num;
  list_.reset();
  endResetModel();
  followGenreLink();
}

void OpdsGenreModel::followGenreLink() {
  if (item_num_ < 0 || static_cast<size_t>(item_num_) >= book_list_->entries.size()) return;
  for (const auto &link : book_list_->entries[static_cast<size_t>(item_num_)]->links) {
    if (link->href.find("itemgenres") == std::string::npos) continue;
    const std::string url = DataManager::ResolveRelativeUrl(book_list_->url, link->href);
    list_ = FeedProvider::Instance().dataManager().GetList(url);
    feedChanged(QString::fromStdString(list_->url));
    return;
  }
}

void OpdsGenreModel::feedChanged(QString url) {
  if (!list_ && book_list_ && book_list_->url == url.toStdString()) {
    followGenreLink();
    return;
  }
  if (!list_ || list_->url != url.toStdString()) return;
  emit isListLoadingChanged(list_->loading);
  beginResetModel();
  endResetModel();
}

void OpdsGenreModel::handleStoresChanged(QString url) {
  store_url_ = url;
}

QString OpdsGenreModel::getCurrentStore() {
  return store_url_;
}

QString OpdsGenreModel::getUrl(int index) {
  const auto link = index >= 0 && index < rowCount() ? genreLink(index) : nullptr;
  return link ? QString::fromStdString(DataManager::ResolveRelativeUrl(list_->url, link->href)) : QString();
}

std::shared_ptr<Link> OpdsGenreModel::genreLink(int index) const {
  return list_->entries[static_cast<size_t>(index)]->GetLinkByType(Link::kCollection);
}
