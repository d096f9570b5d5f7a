// The catalogue library: fetches, parses and caches OPDS lists on its own threads,
// downloads books, and hands every result to ProcessResults() on the caller's thread.
#ifndef LUMENPRESS_OPDS_DATA_MANAGER_H
#define LUMENPRESS_OPDS_DATA_MANAGER_H

#include <functional>
#include <memory>
#include <string>

#include "opds/data_manager_callback.h"
#include "opds/download_info.h"
#include "opds/items_list.h"

namespace lumenpress::opds {

class DataManager {
public:
  explicit DataManager(IDataManagerCallback *callback);
  ~DataManager();
  DataManager(const DataManager &) = delete;
  DataManager &operator=(const DataManager &) = delete;

  void Init();
  void SetUserAgent(std::string &user_agent);
  // Runs the queued results and callbacks on the calling thread.
  void ProcessResults();
  // Our own addition: called on a worker thread when the first result after a ProcessResults()
  // is queued, so that the owner can run ProcessResults() at once instead of at its next poll.
  // The handler must only schedule that call, never make it; an empty function turns it off.
  void SetResultsWaitingHandler(std::function<void()> handler);

  std::shared_ptr<ItemsList> GetList(const std::string &url);
  std::shared_ptr<ItemsList> GetListEx(const std::string &url, bool force);
  std::shared_ptr<ItemsList> GetCachedListSync(const std::string &url);
  std::shared_ptr<ItemsList> GetRelatedList(std::shared_ptr<ItemsList> list, const std::string &href);
  std::shared_ptr<ItemsList> GetSearchList(std::shared_ptr<ItemsList> list, const std::string &text);
  // 0 when a next page is loading, -8 when there is none.
  int LoadNextPage(std::shared_ptr<ItemsList> list);
  std::shared_ptr<ItemsList> ReloadList(const std::string &url);
  void DropListFromCache(const std::string &url);

  static std::string ResolveRelativeUrl(const std::string &base, const std::string &href);
  std::string getCoverUrl(std::shared_ptr<ItemsList> list, int row);
  std::string getCoverUrl(const std::string &base, std::shared_ptr<OPDS::Entry> entry);
  // File extension for a MIME type, or "unsupported".
  static std::string GetExtensionByMime(const std::string &mime);
  static std::string MimeToFormat(const std::string &mime);

  void DownloadBook(std::shared_ptr<ItemsList> list, std::shared_ptr<OPDS::Entry> entry, int flags);
  void DownloadSample(const std::string &url, std::shared_ptr<OPDS::Entry> entry);
  void GetDownloadProgress(std::shared_ptr<OPDS::Entry> *entry, int *percent);
  std::shared_ptr<OPDS::Entry> GetDownloadEntryByBookId(const std::string &id);
  DownloadInfo GetLastDownloadInfo();
  void SetFileDownloadFolder(const std::string &path);
  void setDiskCache(const std::string &folder, const std::string &name);

  void AddBearerCredentials(const std::string &key, const std::string &token);
  void ClearCredentials();

private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace lumenpress::opds

#endif
