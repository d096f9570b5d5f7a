// The catalogue library's state: lists by URL and downloads, owned by the caller's thread,
// with the fetching and parsing done by the workers and handed back through the result queue.
#ifndef LUMENPRESS_HOST_OPDS_DATA_MANAGER_IMPL_H
#define LUMENPRESS_HOST_OPDS_DATA_MANAGER_IMPL_H

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "book_downloader.h"
#include "credential_store.h"
#include "disk_cache.h"
#include "feed_loader.h"
#include "message_queue.h"
#include "opds/data_manager.h"
#include "runnable.h"
#include "worker_pool.h"

namespace lumenpress::opds {

class DataManager::Impl {
public:
  explicit Impl(IDataManagerCallback *callback);

  void init();
  void setUserAgent(const std::string &user_agent);
  void processResults();
  void setResultsWaitingHandler(std::function<void()> handler);

  std::shared_ptr<ItemsList> list(const std::string &url, bool force);
  std::shared_ptr<ItemsList> cachedList(const std::string &url);
  std::shared_ptr<ItemsList> searchList(const std::shared_ptr<ItemsList> &list, const std::string &text);
  int loadNextPage(const std::shared_ptr<ItemsList> &list);
  void drop(const std::string &url);

  void download(const std::string &url, const std::shared_ptr<OPDS::Entry> &entry, const std::string &mime);
  void downloadProgress(std::shared_ptr<OPDS::Entry> *entry, int *percent);
  std::shared_ptr<OPDS::Entry> downloadEntry(const std::string &id) const;
  DownloadInfo lastDownload() const { return last_download_; }
  void setDownloadFolder(const std::string &folder);
  void setCacheFolder(const std::string &folder) { cache_.setFolder(folder); }
  CredentialStore &credentials() { return credentials_; }

private:
  enum class Mode { kReplace, kAppend };
  class ActiveDownload {
  public:
    std::shared_ptr<OPDS::Entry> entry;
    int percent = 0;
  };

  void post(std::function<void()> function);
  void wakeOwner();
  void startLoad(const std::shared_ptr<ItemsList> &list, const std::string &url, Mode mode);
  void apply(const std::shared_ptr<ItemsList> &list, const FeedLoader::Result &result, Mode mode);
  bool progress(const std::shared_ptr<OPDS::Entry> &entry, int percent);
  void finishDownload(const std::shared_ptr<OPDS::Entry> &entry, const BookDownloader::Result &result);
  std::string userAgent() const;

  IDataManagerCallback *callback_;
  CredentialStore credentials_;
  DiskCache cache_;
  FeedLoader loader_{credentials_, cache_};
  BookDownloader downloader_{credentials_};
  utilities::MessageQueue<std::shared_ptr<utilities::IRunnable>> results_;
  // Set by the first result after a ProcessResults(): one wake-up serves all that follow it.
  std::atomic<bool> results_waiting_{false};
  std::mutex waiting_handler_mutex_;
  std::function<void()> waiting_handler_;
  std::map<std::string, std::shared_ptr<ItemsList>> lists_;
  std::map<std::string, std::shared_ptr<OPDS::Entry>> downloaded_entries_;
  DownloadInfo last_download_;

  mutable std::mutex settings_mutex_;
  std::string user_agent_;
  std::string download_folder_ = "/mnt/ext1/Downloads";

  mutable std::mutex downloads_mutex_;
  std::map<std::string, ActiveDownload> active_downloads_;

  // Last, so that its threads stop before anything they use goes away.
  WorkerPool pool_{4};
};

}  // namespace lumenpress::opds

#endif
