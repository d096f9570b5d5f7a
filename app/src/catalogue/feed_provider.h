// The one door of the program to the catalogue library: owns the DataManager, runs its
// result queue on the main thread, turns its callbacks into signals and looks at finished
// downloads.
#ifndef LUMENPRESS_APP_FEED_PROVIDER_H
#define LUMENPRESS_APP_FEED_PROVIDER_H

#include <QObject>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "opds/data_manager.h"

class FeedProvider : public QObject, public lumenpress::opds::IDataManagerCallback {
  Q_OBJECT

public:
  using ItemsList = lumenpress::opds::ItemsList;

  static FeedProvider &Instance();
  ~FeedProvider() override;

  lumenpress::opds::DataManager &dataManager() { return data_manager_; }

  // The list of a URL, requested on first use. `status`: 1 loading, 2 loaded, 3 failed.
  std::shared_ptr<ItemsList> GetFeed(const std::string &url, int *status);
  // Through the feed's own Atom search template when it has one, else the library's search.
  std::shared_ptr<ItemsList> GetSearchList(std::shared_ptr<ItemsList> list, const std::string &text);
  bool isFailed(const std::string &url) const { return failed_.count(url) != 0; }

  // The file extension for a download's Content-Type, or empty.
  static std::string GetContentMimeToExtension(const std::string &content_type);
  // Reads an error document ("status_code", "msg") that a store sent in place of a book.
  static int ParseErrorCode(const std::string &file, int &code, std::string &message);

  void ListLoaded(int error, std::shared_ptr<ItemsList> list) override;
  void DownloadProgress(std::shared_ptr<lumenpress::opds::OPDS::Entry>, int) override {}
  void BookLoaded(int error, std::shared_ptr<lumenpress::opds::OPDS::Entry> entry, const std::string &file) override;

  // Seconds since the epoch; tests put their own clock here.
  void setClock(std::function<int64_t()> clock) { clock_ = std::move(clock); }

signals:
  void feedStatusChanged(QString url);
  void needToRefreshToken();
  void bookDownloaded(QString filename, QString book_id, QString title, QString author);
  void bookDownloadFailed(QString filename, QString book_id, int err, int code);

private:
  FeedProvider();

  static std::string fileExtension(const std::string &name);
  static std::string wantedExtension(const std::string &fileExt, const std::string &contentExt,
                                     const std::string &dispositionExt);
  void emitLoaded(const std::string &file, const lumenpress::opds::OPDS::Entry &entry);

  std::map<std::string, std::shared_ptr<ItemsList>> lists_;
  std::map<std::string, int> failed_;
  lumenpress::opds::DataManager data_manager_;
  QTimer poll_timer_;
  int64_t last_token_refresh_ = 0;
  std::function<int64_t()> clock_;
};

#endif
