#include "opds_list_data_model.h"

#include <QTextDocumentFragment>

#include <charconv>
#include <map>

#include "book_detail_data_model.h"
#include "feed_provider.h"
#include "lp_log.h"
#include "panelkit.h"

using lumenpress::opds::DataManager;
using lumenpress::opds::OPDS::Entry;
using lumenpress::opds::OPDS::Link;

namespace {

constexpr int kSubmodelRowLimit = 4;

// to_chars: a point whatever locale Qt sets for the process, and far cheaper than printf.
QString twoDecimals(double value) {
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 2).ptr;
  return QString::fromLatin1(text, static_cast<int>(end - text));
}

QString plainText(const std::string &html) {
  return QTextDocumentFragment::fromHtml(QString::fromStdString(html)).toPlainText();
}

int elementType(const std::string &id) {
  if (id == "tag:root:weekbook") return 0;
  if (id == "tag:root:popular") return 2;
  if (id == "tag:root:weekgrouped") return 3;
  if (id == "tag:root:categorygrouped") return 4;
  return 1;
}

DataManager &catalogue() {
  return FeedProvider::Instance().dataManager();
}

}  // namespace

OpdsListDataModel::OpdsListDataModel(QObject *parent) : QAbstractListModel(parent) {
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &OpdsListDataModel::feedChanged,
          Qt::QueuedConnection);
}

QString OpdsListDataModel::currencySymbol(const std::string &code) {
  static const std::map<std::string, QString> symbols = {{"EUR", QStringLiteral("€")},
                                                         {"USD", QStringLiteral("$")},
                                                         {"UAH", QStringLiteral("₴")},
                                                         {"RUB", QStringLiteral("₽")}};
  const auto found = symbols.find(code);
  return found == symbols.end() ? QString() : found->second;
}

const std::vector<std::shared_ptr<Entry>> &OpdsListDataModel::entries() const {
  return list_->filter.empty() ? list_->entries : list_->filtered_entries;
}

int OpdsListDataModel::getRowCount() const {
  return list_ ? static_cast<int>(entries().size()) : 0;
}

int OpdsListDataModel::rowCount(const QModelIndex &parent) const {
  if (parent.isValid()) return 0;
  const int count = getRowCount();
  return row_limit_ > 0 ? std::min(count, row_limit_) : count;
}

QHash<int, QByteArray> OpdsListDataModel::roleNames() const {
  return {{ElemTypeRole, "elem_type"},
          {TitleRole, "title"},
          {ElementModelRole, "element_model"},
          {CoverUrlRole, "cover_url"},
          {AuthorRole, "author"},
          {DescriptionRole, "description"},
          {AuthorUrlRole, "author_url"},
          {PriceRole, "price"},
          {PriceWithCodeRole, "price_with_code"},
          {OldPriceWithCodeRole, "old_price_with_code"},
          {PriceOldRole, "price_old"},
          {UrlRole, "url"},
          {BannerRole, "banner_role"},
          {GenresRole, "genres"},
          {BookIdRole, "book_id"},
          {BookFormatRole, "book_format"},
          {RatingRole, "rating"},
          {BookTypeRole, "book_type"},
          {GroupedRole, "grouped"},
          {GroupedUrlListRole, "grouped_url_list"},
          {InStockRole, "in_stock"}};
}

QVariant OpdsListDataModel::data(const QModelIndex &index, int role) const {
  if (!list_ || !index.isValid() || index.row() < 0 || index.row() >= getRowCount()) return {};
  const Entry &entry = *entries()[index.row()];
  return entryData(entry, index.row(), role);
}

QVariant OpdsListDataModel::entryData(const Entry &entry, int row, int role) const {
  switch (role) {
    case ElemTypeRole:
      return elementType(entry.id);
    case TitleRole:
      return QString::fromStdString(entry.title);
    case ElementModelRole:
      if (row >= static_cast<int>(submodels_.size())) return {};
      return QVariant::fromValue(static_cast<QObject *>(submodels_[row].get()));
    case AuthorRole:
      return entry.author ? QVariant(QString::fromStdString(entry.author->name)) : QVariant();
    case DescriptionRole:
      return description(row);
    case AuthorUrlRole:
      return entry.author ? QString::fromStdString(entry.author->uri) : QString();
    case PriceRole:
      return price(entry, false);
    case PriceWithCodeRole:
      return price(entry, true);
    case OldPriceWithCodeRole: {
      const std::string old = entry.GetOldPrice();
      return old == "0" ? QString() : QString::fromStdString(old) + " " + currencySymbol(entry.GetCurrencyCode());
    }
    case PriceOldRole:
      return oldPrice(entry);
    default:
      return linkData(entry, row, role);
  }
}

QVariant OpdsListDataModel::description(int row) const {
  const auto &entry = entries()[row];
  if (descriptions_.size() <= static_cast<size_t>(row)) descriptions_.resize(entries().size());
  Description &kept = descriptions_[row];
  if (kept.entry != entry) {
    kept.entry = entry;
    if (!entry->summary.empty()) {
      kept.text = plainText(entry->summary);
    } else {
      kept.text = entry->content ? QVariant(plainText(entry->content->text)) : QVariant();
    }
  }
  return kept.text;
}

QVariant OpdsListDataModel::linkData(const Entry &entry, int row, int role) const {
  switch (role) {
    case CoverUrlRole:
      return QString::fromStdString(catalogue().getCoverUrl(list_, row));
    case UrlRole: {
      const auto link = entry.GetGoLink();
      return link ? QString::fromStdString(DataManager::ResolveRelativeUrl(list_->url, link->href)) : QString();
    }
    case BannerRole:
      return rowUrl(row);
    case GenresRole: {
      QStringList labels;
      for (const auto &category : entry.categories) labels << QString::fromStdString(category->label);
      return labels.join(", ");
    }
    case BookIdRole:
      return QString::fromStdString(entry.id);
    case RatingRole:
      return QString::fromLatin1(entry.rating.c_str()).toDouble();
    case BookTypeRole:
      if (entry.type.find("grouped") != std::string::npos) return QStringLiteral("@EbooksCollection");
      return entry.type == "audio" ? QStringLiteral("AudioBook") : QStringLiteral("eBook");
    case GroupedRole:
      return entry.type.find("grouped") != std::string::npos;
    case GroupedUrlListRole: {
      QStringList urls;
      if (entry.grouped_img) {
        for (const auto &href : entry.grouped_img->getGroupedImg()) {
          urls << QString::fromStdString(DataManager::ResolveRelativeUrl(list_->url, href));
        }
      }
      return urls;
    }
    case InStockRole:
      return entry.in_stock != "0";
    default:
      return {};
  }
}

QString OpdsListDataModel::price(const Entry &entry, bool withSymbol) const {
  const double value = entry.GetPriceDouble();
  if (value * 100 <= 1) return QString::fromUtf8(GetLangText("@free"));
  const std::string code = entry.GetCurrencyCode();
  return twoDecimals(value) + " " + (withSymbol ? currencySymbol(code) : QString::fromStdString(code));
}

QVariant OpdsListDataModel::oldPrice(const Entry &entry) const {
  const std::string old = entry.GetOldPrice();
  if (old == "0") return QString();
  for (const auto &link : entry.links) {
    const bool acquisition =
        link->type == Link::kAcquisition || link->type == Link::kBuy || link->type == Link::kBorrow;
    if (acquisition && !link->prices.empty()) {
      return QString::fromStdString(old + " " + link->prices.front().currency_code);
    }
  }
  return {};
}

QString OpdsListDataModel::rowUrl(int row) const {
  const Entry &entry = *entries()[row];
  auto link = entry.GetLinkByType(Link::kSubsection);
  if (!link) link = entry.GetGoLink();
  return link ? QString::fromStdString(DataManager::ResolveRelativeUrl(list_->url, link->href)) : QString();
}

QString OpdsListDataModel::listName() const {
  return list_ ? QString::fromStdString(list_->getTitle()) : QString();
}

QString OpdsListDataModel::totalResults() const {
  if (!list_ || list_->Feeds().empty()) return QStringLiteral("0");
  return QString::fromLatin1(list_->Feeds().front()->total_results.c_str());
}

// A list without a search of its own, or none yet, leaves the model as it is.
void OpdsListDataModel::setSearchString(QString search_string) {
  auto results = FeedProvider::Instance().GetSearchList(list_, search_string.toStdString());
  if (results) setItemList(std::move(results));
}

void OpdsListDataModel::setItemList(std::shared_ptr<ItemsList> l) {
  list_ = std::move(l);
  descriptions_.clear();
  no_next_page_ = false;
  setLoadFailed(false);
  emit isReloadingChanged();
  emit noNextPageChanged();
  feedChanged(QString::fromStdString(list_->url));
  beginResetModel();
  endResetModel();
}

void OpdsListDataModel::setModelToUrl(QString url) {
  setItemList(catalogue().GetListEx(url.toStdString(), force_load_));
}

void OpdsListDataModel::setDetailModelTo(int num) {
  BookDetailDataModel::Instance().setEntry(list_, num);
}

void OpdsListDataModel::setDetailModelTo(int num, QString url) {
  if (url.isEmpty()) {
    setDetailModelTo(num);
    return;
  }
  BookDetailDataModel::Instance().setEntry(catalogue().GetListEx(url.toStdString(), force_load_), num);
}

QString OpdsListDataModel::getUrl() const {
  return list_ ? QString::fromStdString(list_->url) : QString();
}

void OpdsListDataModel::feedChanged(QString url) {
  if (!list_ || list_->url != url.toStdString()) return;
  if (list_->stale) list_ = catalogue().GetListEx(list_->url, false);
  no_next_page_ = false;
  emit noNextPageChanged();
  is_reloading_ = false;
  emit isReloadingChanged();
  is_list_loading_ = list_->loading;
  emit isListLoadingChanged(is_list_loading_);
  if (list_->loading) return;
  setLoadFailed(FeedProvider::Instance().isFailed(list_->url));
  LP_LOG(LP_LOG_INFO, "+++++++++++++++++++++++++++++++++++++++ begin reset opds list model -- %d\n\n\n",
         static_cast<int>(list_->loading));
  submodels_.clear();
  descriptions_.clear();
  if (load_submodels_ && !entries().empty()) {
    loadSubmodels();
  } else if (load_series_submodel_ && !entries().empty()) {
    loadSeriesSubmodel();
  }
  announceRows();
  LP_LOG(LP_LOG_INFO, "end reset opds list model");
}

std::shared_ptr<OpdsListDataModel> OpdsListDataModel::makeSubmodel(const std::string &url) {
  auto submodel = std::make_shared<OpdsListDataModel>();
  submodel->list_ = catalogue().GetListEx(url, force_load_);
  submodel->row_limit_ = kSubmodelRowLimit;
  emit submodel->isListLoadingChanged(submodel->list_->loading);
  return submodel;
}

void OpdsListDataModel::loadSubmodels() {
  for (int row = 0; row < static_cast<int>(entries().size()); ++row) {
    auto submodel = makeSubmodel(rowUrl(row).toStdString());
    submodel->load_series_submodel_ = entries()[row]->id == "tag:root:weekgrouped";
    submodels_.push_back(submodel);
  }
}

void OpdsListDataModel::loadSeriesSubmodel() {
  const auto series = entries().front()->GetLinkByType(Link::kSeries);
  if (!series) {
    submodels_.push_back(std::make_shared<OpdsListDataModel>());
    return;
  }
  submodels_.push_back(makeSubmodel(DataManager::ResolveRelativeUrl(list_->url, series->href)));
}

// A further page is announced as inserted rows, so that a list on the panel keeps its place.
void OpdsListDataModel::announceRows() {
  const int total = static_cast<int>(entries().size());
  const int start = list_->Feeds().empty() ? 0 : total - static_cast<int>(list_->Feeds().back()->entries.size());
  const bool beyondLimit = row_limit_ > 0 && row_limit_ < start;
  if (!beyondLimit) {
    if (list_->Feeds().size() < 2 || total == 0) {
      beginResetModel();
      endResetModel();
    } else {
      const int end = row_limit_ > 0 ? std::min(row_limit_, total) : total;
      LP_LOG(LP_LOG_INFO, "++++++++++++++++++++ PUSHT TO MODEL %s - %d [%d:%d]\n\n\n\n", list_->url.c_str(), rowCount(),
             start, end);
      if (start < end) {
        LP_LOG(LP_LOG_INFO, "||||");
        beginInsertRows(QModelIndex(), start, end - 1);
        endInsertRows();
      }
    }
  }
  if (list_->reset_required) {
    beginResetModel();
    endResetModel();
  }
  emit dataChanged(createIndex(0, 0), createIndex(total, 0));
}

void OpdsListDataModel::loadNext() {
  LP_LOG(LP_LOG_INFO, "LOAD NEXT");
  if (!list_) return;
  LP_LOG(LP_LOG_INFO, "Load next list");
  const int result = catalogue().LoadNextPage(list_);
  if (result == 0) {
    is_list_loading_ = list_->loading;
    emit isListLoadingChanged(is_list_loading_);
  } else if (result == -8) {
    no_next_page_ = true;
    emit noNextPageChanged();
  }
}

void OpdsListDataModel::reload() {
  if (!list_) return;
  const std::string url = list_->url;
  catalogue().DropListFromCache(url);
  list_ = catalogue().GetListEx(url, true);
  is_reloading_ = true;
  emit isReloadingChanged();
}

void OpdsListDataModel::setLoadFailed(bool failed) {
  if (load_failed_ == failed) return;
  load_failed_ = failed;
  emit loadFailedChanged();
}

void OpdsListDataModel::forceListLoadingChanged() {
  emit isListLoadingChanged(list_ && list_->loading);
}

std::shared_ptr<std::set<std::string>> OpdsListDataModel::getBooksIds() const {
  auto ids = std::make_shared<std::set<std::string>>();
  if (list_) {
    for (const auto &entry : entries()) ids->insert(entry->id);
  }
  return ids;
}

QString OpdsListDataModel::getListType() const {
  return list_ && list_->url.find("audio") != std::string::npos ? QStringLiteral("AudioBook") : QStringLiteral("eBook");
}

bool OpdsListDataModel::isGrouped() const {
  return list_ && !entries().empty() && entries().front()->type.find("grouped") != std::string::npos;
}

std::vector<std::shared_ptr<Link>> OpdsListDataModel::getLinks() const {
  if (!list_ || list_->Feeds().empty()) return {};
  return list_->Feeds().front()->links;
}
