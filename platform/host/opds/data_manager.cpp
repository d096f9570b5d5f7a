#include "opds/data_manager.h"

#include "data_manager_impl.h"
#include "device_path.h"
#include "mime_types.h"
#include "url_resolver.h"

namespace lumenpress::opds {

namespace {

std::shared_ptr<OPDS::Link> firstLinkOf(const OPDS::Entry &entry, std::initializer_list<OPDS::Link::LinkType> types) {
  for (auto type : types) {
    auto link = entry.GetLinkByType(type);
    if (link && !link->href.empty()) return link;
  }
  return nullptr;
}

}  // namespace

DataManager::DataManager(IDataManagerCallback *callback) : impl_(std::make_unique<Impl>(callback)) {}

DataManager::~DataManager() = default;

void DataManager::Init() {
  impl_->init();
}

void DataManager::SetUserAgent(std::string &user_agent) {
  impl_->setUserAgent(user_agent);
}

void DataManager::ProcessResults() {
  impl_->processResults();
}

void DataManager::SetResultsWaitingHandler(std::function<void()> handler) {
  impl_->setResultsWaitingHandler(std::move(handler));
}

std::shared_ptr<ItemsList> DataManager::GetList(const std::string &url) {
  return impl_->list(url, false);
}

std::shared_ptr<ItemsList> DataManager::GetListEx(const std::string &url, bool force) {
  return impl_->list(url, force);
}

std::shared_ptr<ItemsList> DataManager::GetCachedListSync(const std::string &url) {
  return impl_->cachedList(url);
}

std::shared_ptr<ItemsList> DataManager::GetRelatedList(std::shared_ptr<ItemsList> list, const std::string &href) {
  return impl_->list(ResolveRelativeUrl(list ? list->url : std::string(), href), false);
}

std::shared_ptr<ItemsList> DataManager::GetSearchList(std::shared_ptr<ItemsList> list, const std::string &text) {
  return impl_->searchList(list, text);
}

int DataManager::LoadNextPage(std::shared_ptr<ItemsList> list) {
  return impl_->loadNextPage(list);
}

std::shared_ptr<ItemsList> DataManager::ReloadList(const std::string &url) {
  return impl_->list(url, true);
}

void DataManager::DropListFromCache(const std::string &url) {
  impl_->drop(url);
}

std::string DataManager::ResolveRelativeUrl(const std::string &base, const std::string &href) {
  return UrlResolver::Resolve(base, href);
}

std::string DataManager::getCoverUrl(std::shared_ptr<ItemsList> list, int row) {
  if (!list) return {};
  const auto &entries = list->filter.empty() ? list->entries : list->filtered_entries;
  if (row < 0 || static_cast<size_t>(row) >= entries.size()) return {};
  return getCoverUrl(list->url, entries[static_cast<size_t>(row)]);
}

std::string DataManager::getCoverUrl(const std::string &base, std::shared_ptr<OPDS::Entry> entry) {
  const auto link =
      entry ? firstLinkOf(*entry, {OPDS::Link::kCover, OPDS::Link::kImage, OPDS::Link::kThumbnail}) : nullptr;
  return link ? ResolveRelativeUrl(base, link->href) : std::string();
}

std::string DataManager::GetExtensionByMime(const std::string &mime) {
  return MimeTypes::GetExtensionByMime(mime);
}

std::string DataManager::MimeToFormat(const std::string &mime) {
  return MimeTypes::MimeToFormat(mime);
}

void DataManager::DownloadBook(std::shared_ptr<ItemsList> list, std::shared_ptr<OPDS::Entry> entry, int) {
  const auto link = entry ? firstLinkOf(*entry, {OPDS::Link::kOpenAccess, OPDS::Link::kAcquisition, OPDS::Link::kBuy,
                                                 OPDS::Link::kBorrow})
                          : nullptr;
  if (!link) return;
  impl_->download(ResolveRelativeUrl(list ? list->url : std::string(), link->href), entry, link->mime);
}

void DataManager::DownloadSample(const std::string &url, std::shared_ptr<OPDS::Entry> entry) {
  const auto link = entry ? firstLinkOf(*entry, {OPDS::Link::kSample}) : nullptr;
  if (!link) return;
  impl_->download(ResolveRelativeUrl(url, link->href), entry, link->mime);
}

void DataManager::GetDownloadProgress(std::shared_ptr<OPDS::Entry> *entry, int *percent) {
  impl_->downloadProgress(entry, percent);
}

std::shared_ptr<OPDS::Entry> DataManager::GetDownloadEntryByBookId(const std::string &id) {
  return impl_->downloadEntry(id);
}

DownloadInfo DataManager::GetLastDownloadInfo() {
  return impl_->lastDownload();
}

void DataManager::SetFileDownloadFolder(const std::string &path) {
  impl_->setDownloadFolder(path);
}

void DataManager::setDiskCache(const std::string &folder, const std::string &) {
  impl_->setCacheFolder(platform::MapDevicePath(folder));
}

void DataManager::AddBearerCredentials(const std::string &key, const std::string &token) {
  impl_->credentials().add(key, token);
}

void DataManager::ClearCredentials() {
  impl_->credentials().clear();
}

}  // namespace lumenpress::opds
