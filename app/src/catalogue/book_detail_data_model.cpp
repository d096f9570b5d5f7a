#include "book_detail_data_model.h"

#include <QTextDocumentFragment>

#include <charconv>

#include "feed_provider.h"
#include "lp_log.h"
#include "panelkit.h"
#include "text_case.h"

using lumenpress::opds::DataManager;
using lumenpress::opds::ItemsList;
using lumenpress::opds::OPDS::Entry;
using lumenpress::opds::OPDS::Link;
using lumenpress::opds::OPDS::Price;

namespace {

DataManager &catalogue() {
  return FeedProvider::Instance().dataManager();
}

QString plainText(const std::string &html) {
  return QTextDocumentFragment::fromHtml(QString::fromStdString(html)).toPlainText();
}

// A point whatever the locale.
std::string twoDecimals(double value) {
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 2).ptr;
  return std::string(text, end);
}

std::string langText(const char *key) {
  return GetLangText(key);
}

}  // namespace

BookDetailDataModel &BookDetailDataModel::Instance() {
  static BookDetailDataModel *const model = new BookDetailDataModel;
  return *model;
}

BookDetailDataModel::BookDetailDataModel() : details_(new BookDetailsModel(this)) {
  connect(&FeedProvider::Instance(), &FeedProvider::bookDownloaded, this, &BookDetailDataModel::onBookDownloaded);
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &BookDetailDataModel::feedChanged,
          Qt::QueuedConnection);
}

int BookDetailDataModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() || !entry_ ? 0 : static_cast<int>(related_links_.size()) + 1;
}

QHash<int, QByteArray> BookDetailDataModel::roleNames() const {
  return {{BookIdRole, "book_id"},
          {ElemTypeRole, "elem_type"},
          {TitleRole, "title"},
          {ElementModelRole, "element_model"},
          {CoverUrlRole, "cover_url"},
          {AuthorRole, "author"},
          {DescriptionRole, "description"},
          {BookRatingRole, "bookRating"},
          {NumReviewsRole, "numReviews"},
          {HasSampleRole, "hasSample"},
          {PriceRole, "price"},
          {PriceOldRole, "price_old"},
          {BookTypeRole, "book_type"},
          {GroupedRole, "grouped"},
          {AlternateBookRole, "alternate_book"},
          {IsFreeRole, "is_free"},
          {BookFormatRole, "book_format"},
          {NativeStoreRole, "native_store"},
          {GroupedUrlListRole, "grouped_url_list"},
          {DetailsSubmodelRole, "details_submodel"},
          {InStockRole, "in_stock"}};
}

QVariant BookDetailDataModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return QVariant();
  const int row = index.row();
  switch (role) {
    case ElemTypeRole:
      return row == 0 ? 0 : 1;
    case TitleRole:
      return row == 0 ? QString::fromStdString(entry_->title)
                      : QString::fromStdString(related_links_[static_cast<size_t>(row - 1)]->title);
    case ElementModelRole:
      return static_cast<size_t>(row) < submodels_.size()
                 ? QVariant::fromValue(static_cast<QObject *>(submodels_[static_cast<size_t>(row)].get()))
                 : QVariant();
    case NativeStoreRole: {
      const auto page = entry_->GetLinkByType(Link::kAlternateHtml);
      return page ? QString::fromStdString(page->href) : QStringLiteral("err");
    }
    default:
      return row == 0 ? bookData(role) : QVariant();
  }
}

QVariant BookDetailDataModel::bookData(int role) const {
  switch (role) {
    case BookIdRole:
      return QString::fromStdString(entry_->id);
    case CoverUrlRole:
      return QString::fromStdString(catalogue().getCoverUrl(list_url_, entry_));
    case AuthorRole:
      return entry_->author ? QString::fromStdString(entry_->author->name) : QString();
    case DescriptionRole:
      if (!entry_->summary.empty()) return plainText(entry_->summary);
      return entry_->content ? plainText(entry_->content->text) : QString();
    case BookRatingRole:
      return QString::fromLatin1(entry_->rating.c_str()).toDouble();
    case HasSampleRole:
      return entry_->GetLinkByType(Link::kSample) != nullptr;
    case PriceRole:
      return QString::fromStdString(entry_->GetPrice());
    case PriceOldRole:
      return entry_->GetOldPrice() == "0" ? QString() : QString::fromStdString(entry_->GetOldPrice());
    case BookTypeRole:
      return entry_->type == "audio" ? QStringLiteral("AudioBook") : QStringLiteral("EBook");
    case GroupedRole:
      return is_grouped_;
    case IsFreeRole:
      return const_cast<BookDetailDataModel *>(this)->isFree();
    case BookFormatRole: {
      const QString format = bookFormat();
      return format.isEmpty() ? QVariant() : format;
    }
    case GroupedUrlListRole: {
      QStringList urls;
      if (entry_->grouped_img) {
        for (const auto &href : entry_->grouped_img->getGroupedImg())
          urls << QString::fromStdString(DataManager::ResolveRelativeUrl(list_url_, href));
      }
      return urls;
    }
    case DetailsSubmodelRole:
      return QVariant::fromValue(static_cast<QObject *>(details_));
    case InStockRole:
      return entry_->in_stock != "0";
    default:
      return QVariant();
  }
}

// The format of what is bought: the indirect acquisition of the buying link, or of the free one.
QString BookDetailDataModel::bookFormat() const {
  auto link = entry_->GetLinkByType(Link::kBuy);
  if (!link) link = entry_->GetLinkByType(Link::kOpenAccess);
  if (!link || link->indirect_acquisitions.empty()) return QString();
  return QString::fromStdString(DataManager::MimeToFormat(link->indirect_acquisitions.front().mime)).toUpper();
}

bool BookDetailDataModel::isFree() {
  if (!entry_) return false;
  std::string price = entry_->GetPrice();
  const size_t comma = price.find(',');
  if (comma != std::string::npos) price[comma] = '.';
  bool number = false;
  const double value = QString::fromStdString(price).toDouble(&number);
  return number && value == 0.0;
}

QString BookDetailDataModel::getTitle() {
  return entry_ ? QString::fromStdString(entry_->title) : QString();
}

QString BookDetailDataModel::getBookId() {
  return entry_ ? QString::fromStdString(entry_->id) : QString();
}

QString BookDetailDataModel::getId() {
  return getBookId();
}

QString BookDetailDataModel::getSku() {
  return getBookId();
}

void BookDetailDataModel::setEntry(QString url, int item_num) {
  setEntry(catalogue().GetList(url.toStdString()), item_num);
}

// The same book again only repaints: its related lists stay as they are.
void BookDetailDataModel::setEntry(std::shared_ptr<ItemsList> items_list, int item_num) {
  if (!items_list || item_num < 0 || static_cast<size_t>(item_num) >= items_list->entries.size()) return;
  const std::shared_ptr<Entry> entry = items_list->entries[static_cast<size_t>(item_num)];
  if (entry_ && entry_->id == entry->id) {
    emit dataChanged(index(0), index(rowCount()));
    return;
  }
  list_loading_ = false;
  emit LoadingChanged();
  series_url_.clear();
  list_url_ = items_list->url;
  item_num_ = item_num;
  beginResetModel();
  entry_ = entry;
  details_->SetEntry(entry_);
  related_links_.clear();
  LP_LOG(LP_LOG_INFO, "CHECK STOCK %s", entry_->in_stock != "0" ? "true" : "false");
  submodels_.clear();
  submodels_.push_back(std::make_shared<OpdsListDataModel>());
  is_grouped_ = entry_->type.find("grouped") != std::string::npos;
  book_type_ = entry_->type == "audio" ? QStringLiteral("AudioBook") : QStringLiteral("EBook");
  takeLinks(items_list);
  GenerateBuyStr();
  emit bookTypeChanged();
  endResetModel();
  emit detailModelChanged();
}

void BookDetailDataModel::takeLinks(const std::shared_ptr<ItemsList> &items_list) {
  for (const auto &link : entry_->links) {
    if (link->href.find("itemgenres") != std::string::npos) {
      genres_model_ = std::make_shared<OpdsListDataModel>();
      genres_model_->setItemList(catalogue().GetRelatedList(items_list, link->href));
    } else if (link->type == Link::kSeries) {
      series_url_ = QString::fromStdString(DataManager::ResolveRelativeUrl(items_list->url, link->href));
      if (!series_url_.isEmpty()) emit openSeries(series_url_);
    } else if (link->type == Link::kRelated) {
      related_links_.push_back(link);
      auto related = std::make_shared<OpdsListDataModel>();
      const auto list = catalogue().GetRelatedList(items_list, link->href);
      related->setItemList(list);
      related->setRowLimit(4);
      emit related->isListLoadingChanged(list && list->loading);
      submodels_.push_back(related);
    }
  }
}

// What a book's page holds before the next one is in.
void BookDetailDataModel::forgetBook() {
  beginResetModel();
  series_url_.clear();
  related_links_.clear();
  list_url_.clear();
  item_num_ = 0;
  entry_.reset();
  submodels_.clear();
  details_->SetEntry(nullptr);
  endResetModel();
}

// A book asked for by its own feed, which may still be on its way.
void BookDetailDataModel::setEntryUrl(QString url) {
  const std::shared_ptr<ItemsList> list = catalogue().GetListEx(url.toStdString(), false);
  if (!list->loading) {
    setEntry(list, 0);
    return;
  }
  list_loading_ = true;
  emit LoadingChanged();
  reload_url_ = url.toStdString();
  forgetBook();
}

const Price *BookDetailDataModel::buyPrice() const {
  if (!entry_) return nullptr;
  const auto buy = entry_->GetLinkByType(Link::kBuy);
  return buy && !buy->prices.empty() ? &buy->prices.front() : nullptr;
}

// Before buying: the feed of the book tells whether its price still stands.
void BookDetailDataModel::reloadList() {
  if (!entry_) return;
  const Price *price = buyPrice();
  old_price_ = price ? price->old_value : std::string();
  const auto own = entry_->GetLinkByType(Link::kSubsection);
  if (!own) return;
  detail_reloading_ = true;
  emit detailReloadChanged();
  LP_LOG(LP_LOG_INFO, "old_price %s", old_price_.c_str());
  reload_url_ = DataManager::ResolveRelativeUrl(list_url_, own->href);
  catalogue().ReloadList(reload_url_);
}

// True: the price stands; false: the shown price changed. Only the old price is compared.
void BookDetailDataModel::feedChanged(QString url) {
  if (reload_url_.empty() || reload_url_ != url.toStdString()) return;
  if (!entry_) {
    setEntry(catalogue().GetListEx(reload_url_, false), 0);
    return;
  }
  const std::shared_ptr<ItemsList> list = catalogue().GetListEx(reload_url_, false);
  if (list->loading) return;
  const bool was_reloading = detail_reloading_;
  detail_reloading_ = false;
  emit detailReloadChanged();
  LP_LOG(LP_LOG_INFO, " Load Detail %s, %s.", reload_url_.c_str(), was_reloading ? "True" : "False");
  std::string new_value;
  std::string new_old_value;
  if (!list->entries.empty()) {
    const auto buy = list->entries.front()->GetLinkByType(Link::kBuy);
    if (buy && !buy->prices.empty()) {
      new_value = buy->prices.front().value;
      new_old_value = buy->prices.front().old_value;
    }
  }
  LP_LOG(LP_LOG_INFO, "%s - %s", new_value.c_str(), old_price_.c_str());
  if (new_old_value == old_price_) {
    emit detailReloadFinished(true);
  } else if (new_old_value.empty()) {
    emit reloadFailed();
  } else {
    const auto buy = entry_->GetLinkByType(Link::kBuy);
    if (buy && !buy->prices.empty()) {
      buy->prices.front().value = new_value;
      buy->prices.front().old_value = new_old_value;
    }
    GenerateBuyStr();
    emit detailReloadFinished(false);
    beginResetModel();
    endResetModel();
  }
}

QObject *BookDetailDataModel::getGenresModel() {
  return genres_model_.get();
}

QString BookDetailDataModel::getPrice(bool to_double) {
  if (to_double) return QString::fromStdString(twoDecimals(entry_ ? entry_->GetPriceDouble() : 0.0));
  return entry_ ? QString::fromStdString(entry_->GetPrice()) : QString();
}

QString BookDetailDataModel::getPrice() {
  return getPrice(false);
}

QString BookDetailDataModel::symbol() const {
  return entry_ ? OpdsListDataModel::currencySymbol(entry_->GetCurrencyCode()) : QString();
}

QString BookDetailDataModel::getPriceWithCode() {
  if (!entry_) return QString();
  return QString::fromStdString(twoDecimals(entry_->GetPriceDouble())) + " " + symbol();
}

QString BookDetailDataModel::getCurrencyCode() {
  return entry_ ? QString::fromStdString(entry_->GetCurrencyCode()) : QString();
}

QString BookDetailDataModel::getAuthorFeedUrl(int) {
  if (!entry_ || !entry_->author) return QString();
  return QString::fromStdString(DataManager::ResolveRelativeUrl(list_url_, entry_->author->uri));
}

QString BookDetailDataModel::getAuthorFeedUrl() {
  return getAuthorFeedUrl(0);
}

bool BookDetailDataModel::isGroupedBook() {
  return entry_ && entry_->type.find("grouped") != std::string::npos;
}

QString BookDetailDataModel::GetDiscountCount() {
  const Price *price = buyPrice();
  return price ? QString::fromStdString(price->discount_count) : QStringLiteral("0");
}

QString BookDetailDataModel::GetMinimumBookInSeries() {
  const Price *price = buyPrice();
  return price ? QString::fromStdString(price->min_books) : QStringLiteral("0");
}

// Rich text: "free", or the word to buy with the price, or the old price struck through
// before the new one.
QString BookDetailDataModel::GenerateBuyStr() {
  if (isFree()) return QString::fromStdString("<b>" + langText("@free") + "</b>");
  const std::string sign = symbol().toStdString();
  const std::string price = entry_ ? twoDecimals(entry_->GetPriceDouble()) : "0.00";
  const std::string old = entry_ ? entry_->GetOldPrice() : "0";
  if (old == "0")
    return QString::fromStdString("<b>" + lumenpress::utilities::ToUpper(langText("@Buy")) + " " + sign + " " + price +
                                  "</b>");
  return QString::fromStdString("<b></b><s><font color=\"gray\">" + sign + " " + old + "</s></font><b> " + sign + " " +
                                price + "</b>");
}

void BookDetailDataModel::updateBuyBttnPos(double pos) {
  buy_bttn_pos_ = pos;
  emit buyBttnPosChanged();
}

void BookDetailDataModel::downloadSample(int) {
  if (entry_) catalogue().DownloadSample(list_url_, entry_);
}

void BookDetailDataModel::onBookDownloaded(QString, QString book_id, QString, QString) {
  emit bookDownloadedSl(book_id);
  if (entry_) emit dataChanged(index(0), index(rowCount() - 1));
}

int BookDetailDataModel::getDownloadedProgress(int) {
  std::shared_ptr<Entry> downloading;
  int percent = 0;
  catalogue().GetDownloadProgress(&downloading, &percent);
  return downloading && entry_ && downloading->id == entry_->id ? percent : 0;
}
