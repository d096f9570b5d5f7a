#include "category_tree_list_model.h"

#include "feed_provider.h"

using lumenpress::opds::DataManager;
using lumenpress::opds::OPDS::Entry;
using lumenpress::opds::OPDS::Link;

CategoryTreeListModel::CategoryTreeListModel(QObject *parent) : QAbstractListModel(parent) {
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &CategoryTreeListModel::feedChanged,
          Qt::QueuedConnection);
}

int CategoryTreeListModel::levelOf(const std::string &id) {
  const size_t mark = id.find(":genres::");
  if (mark == std::string::npos) return 0;
  size_t at = id.find("::", mark + 9);
  if (at == std::string::npos) return 0;
  int level = 1;
  while ((at = id.find("::", at + 2)) != std::string::npos) ++level;
  return level;
}

int CategoryTreeListModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant CategoryTreeListModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return QVariant();
  const Row &row = rows_[static_cast<size_t>(index.row())];
  switch (role) {
    case TitleRole:
      return QString::fromStdString(row.entry->title);
    case UrlRole: {
      const auto link = row.entry->GetLinkByType(Link::kSubsection);
      return link ? QString::fromStdString(DataManager::ResolveRelativeUrl(list_->url, link->href)) : QString();
    }
    case OpenedRole:
      return row.is_opened;
    case HasChildrenRole:
      return row.has_children;
    case LevelRole:
      return row.level;
    default:
      return QVariant();
  }
}

QHash<int, QByteArray> CategoryTreeListModel::roleNames() const {
  return {{TitleRole, "title"},
          {UrlRole, "url"},
          {OpenedRole, "is_opened"},
          {HasChildrenRole, "has_children"},
          {LevelRole, "level"}};
}

QString CategoryTreeListModel::listName() const {
  return list_ ? QString::fromStdString(list_->getTitle()) : QString();
}

void CategoryTreeListModel::setModelToUrl(QString url) {
  beginResetModel();
  list_ = FeedProvider::Instance().dataManager().GetList(url.toStdString());
  rows_.clear();
  processed_ = 0;
  endResetModel();
  emit listNameChanged();
  feedChanged(QString::fromStdString(list_->url));
}

// A first load shows the top level; a later page extends it.
void CategoryTreeListModel::feedChanged(QString url) {
  if (!list_ || list_->url != url.toStdString()) return;
  is_list_loading_ = list_->loading;
  const int entries = static_cast<int>(list_->entries.size());
  beginResetModel();
  for (int i = processed_; i < entries; ++i) {
    const auto &entry = list_->entries[static_cast<size_t>(i)];
    if (levelOf(entry->id) == 0) {
      rows_.push_back({entry, i, false, false, 0});
    } else if (!rows_.empty()) {
      rows_.back().has_children = true;
    }
  }
  processed_ = std::max(processed_, entries);
  endResetModel();
  emit listNameChanged();
}

void CategoryTreeListModel::openSublist(int index) {
  if (index < 0 || index >= rowCount()) return;
  const Row &parent = rows_[static_cast<size_t>(index)];
  const int level = parent.level;
  std::vector<Row> children;
  const auto &entries = list_->entries;
  for (size_t i = static_cast<size_t>(parent.index) + 1; i < entries.size(); ++i) {
    const int entry_level = levelOf(entries[i]->id);
    if (entry_level <= level) break;
    if (entry_level != level + 1) continue;
    const bool deeper_next = i + 1 < entries.size() && levelOf(entries[i + 1]->id) > entry_level;
    children.push_back({entries[i], static_cast<int>(i), deeper_next, false, entry_level});
  }
  if (!children.empty()) {
    beginInsertRows(QModelIndex(), index + 1, index + static_cast<int>(children.size()));
    rows_.insert(rows_.begin() + index + 1, children.begin(), children.end());
    endInsertRows();
  }
  rows_[static_cast<size_t>(index)].is_opened = true;
  emit dataChanged(this->index(index), this->index(index), {OpenedRole});
}

// The rows below go down to the next of the same level or higher, grandchildren included.
void CategoryTreeListModel::closeSublist(int index) {
  if (index < 0 || index >= rowCount() || !rows_[static_cast<size_t>(index)].has_children) return;
  const int level = rows_[static_cast<size_t>(index)].level;
  int last = index;
  while (last + 1 < rowCount() && rows_[static_cast<size_t>(last + 1)].level > level) ++last;
  if (last > index) {
    beginRemoveRows(QModelIndex(), index + 1, last);
    rows_.erase(rows_.begin() + index + 1, rows_.begin() + last + 1);
    endRemoveRows();
  }
  rows_[static_cast<size_t>(index)].is_opened = false;
  emit dataChanged(this->index(index), this->index(index), {OpenedRole});
}

QString CategoryTreeListModel::getTabListUrl() {
  if (!list_) return QString();
  for (const auto &entry : list_->entries) {
    if (entry->type != "tab") continue;
    const auto link = entry->GetLinkByType(Link::kSubsection);
    if (link) return QString::fromStdString(DataManager::ResolveRelativeUrl(list_->url, link->href));
  }
  return QString();
}

QString CategoryTreeListModel::getListType() {
  return list_ && list_->url.find("audio") != std::string::npos ? QStringLiteral("Audio") : QStringLiteral("Ebook");
}
