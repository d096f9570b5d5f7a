#include "language_model.h"

#include <QDebug>

#include "facet_link_rows.h"
#include "feed_provider.h"
#include "lp_log.h"

using lumenpress::opds::OPDS::Link;

LanguageModel::LanguageModel(QObject *parent) : QAbstractListModel(parent) {
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &LanguageModel::feedChanged,
          Qt::QueuedConnection);
}

int LanguageModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(languages_.size());
}

QVariant LanguageModel::data(const QModelIndex &index, int role) const {
  return FacetLinkRows::data(languages_, index, role);
}

QHash<int, QByteArray> LanguageModel::roleNames() const {
  return FacetLinkRows::roleNames();
}

// A list that is already loaded fills the rows at once.
void LanguageModel::setModelToUrl(QString url) {
  emit languageLoaded(false);
  list_ = FeedProvider::Instance().dataManager().GetList(url.toStdString());
  beginResetModel();
  languages_.clear();
  other_languages_.clear();
  endResetModel();
  feedChanged(url);
}

void LanguageModel::feedChanged(QString url) {
  if (!list_ || list_->url != url.toStdString() || list_->loading) return;
  qDebug() << "===== SetLanguageTo " << url;
  const bool has_entries = !list_->entries.empty();
  if (has_entries) {
    beginResetModel();
    takeLanguageLinks();
  }
  qDebug() << "______ LanguageChanged " << (languages_.empty() ? "false" : "true");
  emit languageLoaded(!languages_.empty());
  if (has_entries) endResetModel();
  if (!has_entries) LP_LOG(LP_LOG_INFO, "LANGUAGE FEED EMPTY ");
}

void LanguageModel::takeLanguageLinks() {
  languages_.clear();
  other_languages_.clear();
  if (list_->Feeds().empty()) return;
  for (const auto &link : list_->Feeds().front()->links) {
    if (link->type != Link::kFacet) continue;
    if (link->facet_group == "Filter") {
      languages_.push_back(link);
    } else if (link->facet_group == "Language") {
      other_languages_.push_back(link);
    }
  }
}

// A language that is in force already leaves the menu without its list until the next load.
void LanguageModel::setModelToIndex(int index) {
  emit languageLoaded(false);
  if (index < 0 || index >= static_cast<int>(languages_.size())) return;
  const Link &link = *languages_[static_cast<size_t>(index)];
  if (link.active) return;
  link_ = link.href;
  qDebug() << "==== SetLanguageToIndex" << QString::fromStdString(link_);
  const size_t found = link_.find("?content=");
  content_ = found != std::string::npos && found >= 1 ? link_.substr(found) : std::string();
  emit preferablyLanguageChanged();
}

QString LanguageModel::getElementText(int index) {
  if (index < 0 || index >= static_cast<int>(languages_.size())) return QString();
  return QString::fromStdString(languages_[static_cast<size_t>(index)]->title);
}

void LanguageModel::resetContent() {
  store_suffix_.clear();
  content_.clear();
}
