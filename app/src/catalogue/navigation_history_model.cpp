#include "navigation_history_model.h"

#include "lp_log.h"
#include "panelkit.h"

NavigationHistoryModel::NavigationHistoryModel(QObject *parent) : QAbstractListModel(parent) {}

void NavigationHistoryModel::SetHistory(NavigationHistory *history) {
  beginResetModel();
  history_ = history;
  connect(history_, &NavigationHistory::currentChanged, this, &NavigationHistoryModel::historyChanged);
  endResetModel();
}

void NavigationHistoryModel::historyChanged() {
  beginResetModel();
  endResetModel();
}

int NavigationHistoryModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() || !history_ ? 0 : static_cast<int>(history_->elements().size());
}

QVariant NavigationHistoryModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || role != NameRole || index.row() >= rowCount()) return QVariant();
  return title(history_->elements()[static_cast<size_t>(index.row())]);
}

QHash<int, QByteArray> NavigationHistoryModel::roleNames() const {
  return {{NameRole, "name"}};
}

QString NavigationHistoryModel::title(const NavigationHistory::Element &element) const {
  const auto &list = element.list;
  if (element.type == NavigationHistory::NavigateElement) {
    if (list && element.item_num >= 0 && static_cast<size_t>(element.item_num) < list->entries.size())
      return QString::fromStdString(list->entries[static_cast<size_t>(element.item_num)]->title);
    return QString::fromStdString(element.title);
  }
  if (!list || list->loading) return QString::fromUtf8(GetLangText("@Loading"));
  // The place's own list: asking the library anew would fetch a failed list again on every
  // paint, and every answer repaints.
  const std::string name = list->getTitle();
  LP_LOG(LP_LOG_INFO, "=============================== GetTitle %s", name.c_str());
  if (name.empty() && element.type == NavigationHistory::NavigatePurchasedList)
    return QString::fromUtf8(GetLangText("@MyPurchases"));
  return QString::fromStdString(name);
}
