#include "data_manager_impl.h"

#include <algorithm>
#include <cctype>

#include "function_runnable.h"
#include "lp_log.h"
#include "mime_types.h"
#include "url_resolver.h"

namespace lumenpress::opds {

namespace {

bool containsFolded(const std::string &text, const std::string &part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(),
                     [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); }) != text.end();
}

void refilter(ItemsList &list) {
  list.filtered_entries.clear();
  if (list.filter.empty()) return;
  for (const auto &entry : list.entries) {
    if (containsFolded(entry->title, list.filter) ||
        (entry->author && containsFolded(entry->author->name, list.filter)))
      list.filtered_entries.push_back(entry);
  }
}

std::shared_ptr<OPDS::Link> findLink(const ItemsList &list, OPDS::Link::LinkType type) {
  for (const auto &feed : list.Feeds()) {
    for (const auto &link : feed->links) {
      if (link->type == type) return link;
    }
  }
  return nullptr;
}

// A feed may give its search twice, as an Atom template and as an OpenSearch description; the
// description says best where and how to search.
std::shared_ptr<OPDS::Link> searchLink(const ItemsList &list) {
  for (const auto &feed : list.Feeds()) {
    for (const auto &link : feed->links) {
      if (link->type == OPDS::Link::kSearch && link->mime.rfind("application/opensearchdescription+xml", 0) == 0)
        return link;
    }
  }
  return findLink(list, OPDS::Link::kSearch);
}

}  // namespace

DataManager::Impl::Impl(IDataManagerCallback *callback) : callback_(callback) {}

void DataManager::Impl::init() {
  results_.Init();
}

void DataManager::Impl::setUserAgent(const std::string &user_agent) {
  std::lock_guard<std::mutex> lock(settings_mutex_);
  user_agent_ = user_agent;
}

std::string DataManager::Impl::userAgent() const {
  std::lock_guard<std::mutex> lock(settings_mutex_);
  return user_agent_;
}

void DataManager::Impl::setDownloadFolder(const std::string &folder) {
  std::lock_guard<std::mutex> lock(settings_mutex_);
  download_folder_ = folder;
}

// Runs only what was queued when called: callbacks that ask for more see it next time.
void DataManager::Impl::processResults() {
  // Cleared before the queue is counted, so that a result queued after the count wakes the
  // owner again. An exchange, not a store: it reads the flag the workers set, and with it every
  // result queued by a worker that found the flag set and woke nobody.
  results_waiting_.exchange(false);
  std::shared_ptr<utilities::IRunnable> runnable;
  for (size_t pending = results_.Size(); pending > 0 && results_.TryPop(&runnable); --pending) runnable->Run();
}

void DataManager::Impl::setResultsWaitingHandler(std::function<void()> handler) {
  std::lock_guard<std::mutex> lock(waiting_handler_mutex_);
  waiting_handler_ = std::move(handler);
}

void DataManager::Impl::post(std::function<void()> function) {
  results_.Push(std::make_shared<FunctionRunnable>(std::move(function)));
  if (!results_waiting_.exchange(true)) wakeOwner();
}

// Called under the lock, so that once the handler is replaced no call of the old one is
// still running.
void DataManager::Impl::wakeOwner() {
  std::lock_guard<std::mutex> lock(waiting_handler_mutex_);
  if (waiting_handler_) waiting_handler_();
}

void DataManager::Impl::startLoad(const std::shared_ptr<ItemsList> &list, const std::string &url, Mode mode) {
  list->loading = true;
  const std::string agent = userAgent();
  pool_.submit([this, list, url, mode, agent] {
    FeedLoader::Result result = loader_.load(url, agent, mode == Mode::kAppend);
    post([this, list, result, mode] { apply(list, result, mode); });
  });
}

void DataManager::Impl::apply(const std::shared_ptr<ItemsList> &list, const FeedLoader::Result &result, Mode mode) {
  list->loading = false;
  if (result.error == 0 && result.feed) {
    // Only a list that held pages before needs its models rebuilt: a first page resets them
    // anyway, and a second reset would throw away the rows the first one made.
    const bool reloaded = mode == Mode::kReplace && !list->Feeds().empty();
    if (mode == Mode::kReplace) {
      list->Feeds().clear();
      list->entries.clear();
      list->setTitle(result.title);
    }
    list->reset_required = reloaded;
    list->stale = false;
    list->Feeds().push_back(result.feed);
    list->entries.insert(list->entries.end(), result.feed->entries.begin(), result.feed->entries.end());
    refilter(*list);
  }
  callback_->ListLoaded(result.error, list);
}

std::shared_ptr<ItemsList> DataManager::Impl::list(const std::string &url, bool force) {
  auto &list = lists_[url];
  if (!list) list = std::make_shared<ItemsList>(url);
  const bool never_loaded = list->Feeds().empty();
  if (!list->loading && (force || list->stale || never_loaded)) startLoad(list, url, Mode::kReplace);
  return list;
}

std::shared_ptr<ItemsList> DataManager::Impl::cachedList(const std::string &url) {
  const auto known = lists_.find(url);
  if (known != lists_.end() && !known->second->Feeds().empty()) return known->second;
  FeedLoader::Result result;
  if (!loader_.loadCached(url, &result)) return nullptr;
  auto &list = lists_[url];
  if (!list) list = std::make_shared<ItemsList>(url);
  list->Feeds() = {result.feed};
  list->entries = result.feed->entries;
  list->setTitle(result.title);
  list->reset_required = true;
  refilter(*list);
  return list;
}

std::shared_ptr<ItemsList> DataManager::Impl::searchList(const std::shared_ptr<ItemsList> &list,
                                                         const std::string &text) {
  const auto link = list ? searchLink(*list) : nullptr;
  if (!link) {
    LP_LOG(LP_LOG_WARNING, "No search link in %s", list ? list->url.c_str() : "(null)");
    return nullptr;
  }
  const std::string search_url = UrlResolver::Resolve(list->url, link->href);
  const std::string key = search_url + (search_url.find('#') == std::string::npos ? "#" : "&") + "search=" + text;
  auto &results = lists_[key];
  if (!results) results = std::make_shared<ItemsList>(key);
  if (results->loading) return results;
  results->loading = true;
  const std::string agent = userAgent();
  pool_.submit([this, results, search_url, text, agent] {
    FeedLoader::Result result = loader_.search(search_url, text, agent);
    post([this, results, result] { apply(results, result, Mode::kReplace); });
  });
  return results;
}

int DataManager::Impl::loadNextPage(const std::shared_ptr<ItemsList> &list) {
  if (!list || list->Feeds().empty()) return -8;
  if (list->loading) return 0;
  std::shared_ptr<OPDS::Link> next;
  for (const auto &link : list->Feeds().back()->links) {
    if (link->type == OPDS::Link::kNext && !link->href.empty()) next = link;
  }
  if (!next) return -8;
  startLoad(list, UrlResolver::Resolve(list->url, next->href), Mode::kAppend);
  return 0;
}

void DataManager::Impl::drop(const std::string &url) {
  const auto known = lists_.find(url);
  if (known != lists_.end()) {
    known->second->stale = true;
    lists_.erase(known);
  }
  cache_.remove(url);
}

void DataManager::Impl::download(const std::string &url, const std::shared_ptr<OPDS::Entry> &entry,
                                 const std::string &mime) {
  downloaded_entries_[entry->id] = entry;
  {
    std::lock_guard<std::mutex> lock(downloads_mutex_);
    active_downloads_[entry->id] = ActiveDownload{entry, 0};
  }
  const std::string extension = MimeTypes::GetExtensionByMime(mime);
  const std::string fallback = entry->id + (extension == "unsupported" ? "" : "." + extension);
  std::string folder;
  {
    std::lock_guard<std::mutex> lock(settings_mutex_);
    folder = download_folder_;
  }
  const std::string agent = userAgent();
  pool_.submit([this, url, entry, folder, fallback, agent] {
    const auto result = downloader_.download(url, folder, fallback, agent,
                                             [this, entry](int percent) { return progress(entry, percent); });
    post([this, entry, result] { finishDownload(entry, result); });
  });
}

bool DataManager::Impl::progress(const std::shared_ptr<OPDS::Entry> &entry, int percent) {
  {
    std::lock_guard<std::mutex> lock(downloads_mutex_);
    auto &active = active_downloads_[entry->id];
    if (active.percent == percent) return true;
    active.percent = percent;
  }
  post([this, entry, percent] { callback_->DownloadProgress(entry, percent); });
  return true;
}

void DataManager::Impl::finishDownload(const std::shared_ptr<OPDS::Entry> &entry,
                                       const BookDownloader::Result &result) {
  {
    std::lock_guard<std::mutex> lock(downloads_mutex_);
    active_downloads_.erase(entry->id);
  }
  last_download_ = result.info;
  callback_->BookLoaded(result.error, entry, result.file);
}

void DataManager::Impl::downloadProgress(std::shared_ptr<OPDS::Entry> *entry, int *percent) {
  std::lock_guard<std::mutex> lock(downloads_mutex_);
  const bool any = !active_downloads_.empty();
  if (entry) *entry = any ? active_downloads_.begin()->second.entry : nullptr;
  if (percent) *percent = any ? active_downloads_.begin()->second.percent : 0;
}

std::shared_ptr<OPDS::Entry> DataManager::Impl::downloadEntry(const std::string &id) const {
  const auto known = downloaded_entries_.find(id);
  return known == downloaded_entries_.end() ? nullptr : known->second;
}

}  // namespace lumenpress::opds
