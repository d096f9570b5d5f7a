#include "navigation_history.h"

#include <cstdio>

#include "feed_provider.h"
#include "panelkit.h"

using lumenpress::opds::DataManager;
using lumenpress::opds::ItemsList;
using lumenpress::opds::OPDS::Link;

namespace {

constexpr size_t kKeptSearches = 20;

DataManager &catalogue() {
  return FeedProvider::Instance().dataManager();
}

bool holds(const std::shared_ptr<ItemsList> &list, int item_num) {
  return list && item_num >= 0 && static_cast<size_t>(item_num) < list->entries.size();
}

}  // namespace

NavigationHistory::NavigationHistory(QObject *parent) : QObject(parent) {
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &NavigationHistory::feedChanged,
          Qt::QueuedConnection);
}

QString NavigationHistory::currentUrl() const {
  return history_.empty() || !history_.back().list ? QString() : QString::fromStdString(history_.back().list->url);
}

int NavigationHistory::itemNum() const {
  return history_.empty() ? 0 : history_.back().item_num;
}

NavigationHistory::HistoryElementType NavigationHistory::itemType() const {
  return history_.empty() ? NavigateRoot : history_.back().type;
}

void NavigationHistory::push(const QString &url, HistoryElementType type) {
  history_.push_back({catalogue().GetList(url.toStdString()), std::string(), 0, type, 0});
  emit currentChanged();
}

void NavigationHistory::pushRootItem(QString url) {
  push(url, NavigateRoot);
}

void NavigationHistory::pushListData(QString url) {
  push(url, NavigateItemsList);
}

void NavigationHistory::pushGenreList(QString url) {
  push(url, NavigateGenreList);
}

void NavigationHistory::pushPurchasedList(QString url) {
  push(url, NavigatePurchasedList);
}

// A new search takes the place of the last one; the same search is not stacked again.
void NavigationHistory::pushSearchList(QString url) {
  if (!history_.empty() && history_.back().list && history_.back().list->url == url.toStdString()) return;
  if (!history_.empty() && history_.back().type == NavigateSearchList) history_.pop_back();
  push(url, NavigateSearchList);
}

std::string NavigationHistory::bookId(const Element &element) {
  return holds(element.list, element.item_num) ? element.list->entries[static_cast<size_t>(element.item_num)]->id
                                               : std::string();
}

void NavigationHistory::pushDetailedList(QString url, int item_num) {
  const std::shared_ptr<ItemsList> list = catalogue().GetList(url.toStdString());
  std::string book_url = url.toStdString();
  std::string title = GetLangText("@Loading");
  if (holds(list, item_num)) {
    const auto &entry = list->entries[static_cast<size_t>(item_num)];
    if (const auto own = entry->GetLinkByType(Link::kSubsection))
      book_url = DataManager::ResolveRelativeUrl(list->url, own->href);
    title = entry->title;
  }
  const std::shared_ptr<ItemsList> detail = catalogue().GetList(book_url);
  Element element{list, title, item_num, NavigateElement, 0};
  if (!detail || detail->entries.empty()) {
    current_url_ = url;
  } else if (!history_.empty() && history_.back().type == NavigateElement &&
             bookId(history_.back()) == bookId(element)) {
    return;
  }
  history_.push_back(element);
  emit currentChanged();
}

// A book opened twice while it was loading is brought back to one element.
void NavigationHistory::mergeRepeatedBook() {
  if (history_.size() < 2 || history_.back().type != NavigateElement) return;
  const Element &below = history_[history_.size() - 2];
  if (below.type == NavigateElement && bookId(below) == bookId(history_.back())) history_.pop_back();
}

// A search without a result leaves no place to go back to.
void NavigationHistory::forgetEmptySearch(const std::string &url) {
  for (auto element = history_.begin(); element != history_.end(); ++element) {
    if (element->type == NavigateSearchList && element->list && element->list->url == url) {
      history_.erase(element);
      return;
    }
  }
}

void NavigationHistory::feedChanged(QString url) {
  if (!current_url_.isEmpty() && current_url_ == url) mergeRepeatedBook();
  if (url.contains(QLatin1String("opensearch/search"))) {
    const std::shared_ptr<ItemsList> list = catalogue().GetList(url.toStdString());
    if (list->loading || !list->entries.empty()) {
      search_urls_.push_back(url);
    } else {
      forgetEmptySearch(list->url);
    }
  }
  emit currentChanged();
}

int NavigationHistory::getLastElementType() {
  return history_.back().type;
}

QString NavigationHistory::getLastSearchUrl() {
  if (search_urls_.size() > kKeptSearches) search_urls_.pop_front();
  return search_urls_.empty() ? QString() : search_urls_.back();
}

void NavigationHistory::popItems(int num) {
  if (num < 1) return;
  for (int i = 0; i < num && !history_.empty(); ++i) history_.pop_back();
  emit currentChanged();
}

int NavigationHistory::size() {
  return static_cast<int>(history_.size());
}

void NavigationHistory::log(QString s) {
  std::fprintf(stderr, "%s\n", qUtf8Printable(s));
}

void NavigationHistory::history() {
  for (size_t i = 0; i < history_.size(); ++i) {
    const Element &element = history_[i];
    std::fprintf(stderr, "history %zu: type %d item %d position %d %s [%s]\n", i, element.type, element.item_num,
                 element.position, element.list ? element.list->url.c_str() : "", element.title.c_str());
  }
}

void NavigationHistory::setPosition(int position) {
  if (!history_.empty()) history_.back().position = position;
}

int NavigationHistory::getPosition() {
  return history_.empty() ? 0 : history_.back().position;
}
