#include "feed_provider.h"

#include <json/json.h>

#include <cstdio>
#include <ctime>
#include <fstream>

#include "device_path.h"
#include "json_member.h"
#include "lp_log.h"
#include "user_agent_config.h"

using lumenpress::bookstore::JsonMember;
using lumenpress::opds::DataManager;
using lumenpress::opds::OPDS::Entry;
using lumenpress::opds::OPDS::Link;

namespace {

constexpr int kFailedStatus = 3;
constexpr int64_t kTokenRefreshPause = 61;

std::string before(const std::string &text, size_t position) {
  return text.substr(0, position);
}

std::string devicePath(const std::string &file) {
  return lumenpress::platform::MapDevicePath(file);
}

}  // namespace

FeedProvider &FeedProvider::Instance() {
  static FeedProvider provider;
  return provider;
}

FeedProvider::FeedProvider() : data_manager_(this), clock_([] { return static_cast<int64_t>(std::time(nullptr)); }) {
  data_manager_.Init();
  std::string agent = lumenpress::utilities::UserAgentConfig(qVersion(), "73.16").userAgentForHost("");
  data_manager_.SetUserAgent(agent);
  // Results run as soon as they wait; the 100 ms poll stays as the floor.
  data_manager_.SetResultsWaitingHandler([this] {
    QMetaObject::invokeMethod(
        this, [this] { data_manager_.ProcessResults(); }, Qt::QueuedConnection);
  });
  poll_timer_.setInterval(100);
  connect(&poll_timer_, &QTimer::timeout, this, [this] { data_manager_.ProcessResults(); });
  poll_timer_.start();
}

// Workers that finish while the catalogue library shuts down must not post to this object.
FeedProvider::~FeedProvider() {
  data_manager_.SetResultsWaitingHandler(nullptr);
}

std::shared_ptr<FeedProvider::ItemsList> FeedProvider::GetFeed(const std::string &url, int *status) {
  const auto known = lists_.find(url);
  if (known == lists_.end()) {
    auto list = data_manager_.GetList(url);
    lists_[url] = list;
    *status = 1;
    return list;
  }
  const auto failed = failed_.find(url);
  if (failed != failed_.end()) {
    *status = failed->second;
  } else {
    *status = known->second->loading && known->second->entries.empty() ? 1 : 2;
  }
  return known->second;
}

std::shared_ptr<FeedProvider::ItemsList> FeedProvider::GetSearchList(std::shared_ptr<ItemsList> list,
                                                                     const std::string &text) {
  if (!list.get() || list->Feeds().empty()) {
    LP_LOG(LP_LOG_ERROR,
           "Condition: \"!list.get() || list->Feeds().empty()\", return(\"std::shared_ptr<ItemsList>()\")]");
    return {};
  }
  const auto links = list->Feeds().front()->links;
  std::shared_ptr<Link> search;
  for (const auto &link : links) {
    if (link->type == Link::kSearch && link->mime == "application/atom+xml") {
      search = link;
      break;
    }
  }
  if (!search) return data_manager_.GetSearchList(list, text);
  std::string url = search->href;
  const auto terms = url.find("{searchTerms}");
  if (terms != std::string::npos) url.replace(terms, 13, text);
  const auto language = url.find("{language}");
  if (language != std::string::npos) url.replace(language, 10, "ua");
  if (url.find("://") == std::string::npos) url = DataManager::ResolveRelativeUrl(list->url, url);
  return data_manager_.GetList(url);
}

std::string FeedProvider::GetContentMimeToExtension(const std::string &content_type) {
  std::string mime;
  if (content_type.find(';') != std::string::npos) {
    mime = before(content_type, content_type.find(';'));
  } else if (content_type.find_first_of("\n\r") != std::string::npos) {
    mime = before(content_type, content_type.find_first_of("\n\r"));
  } else {
    return {};
  }
  const std::string extension = DataManager::GetExtensionByMime(mime);
  if (extension == "unsupported") {
    LP_LOG(LP_LOG_ERROR, "UNSUPPORTED FILE EXTENSION");
    return {};
  }
  return extension;
}

int FeedProvider::ParseErrorCode(const std::string &file, int &code, std::string &message) {
  std::ifstream in(devicePath(file));
  if (!in) return -1;
  std::string text;
  for (std::string line; std::getline(in, line);) text += line;
  Json::Value document;
  if (!JsonMember::parse(text, &document)) {
    LP_LOG(LP_LOG_ERROR, "Failed to parse json %s", text.c_str());
    return -1;
  }
  code = JsonMember::integer(document, "status_code", -1);
  message = JsonMember::text(document, "msg");
  return -1;
}

void FeedProvider::ListLoaded(int error, std::shared_ptr<ItemsList> list) {
  const std::string url = list->url;
  if (error == 401) {
    const int64_t now = clock_();
    if (now < last_token_refresh_ || now >= last_token_refresh_ + kTokenRefreshPause) {
      last_token_refresh_ = now;
      emit needToRefreshToken();
    }
  }
  if (error != 0 && error != 401) failed_[url] = kFailedStatus;
  if (error == 0 || error == 401) failed_.erase(url);
  emit feedStatusChanged(QString::fromStdString(url));
}

std::string FeedProvider::fileExtension(const std::string &name) {
  const auto dot = name.rfind('.');
  if (dot == std::string::npos) return {};
  const std::string extension = name.substr(dot + 1);
  if (extension != "zip" || dot == 0) return extension;
  const auto previous = name.rfind('.', dot - 1);
  return previous == std::string::npos ? extension : name.substr(previous + 1);
}

std::string FeedProvider::wantedExtension(const std::string &fileExt, const std::string &contentExt,
                                          const std::string &dispositionExt) {
  if (fileExt == contentExt) return {};
  if (!dispositionExt.empty()) return dispositionExt == fileExt ? std::string() : dispositionExt;
  return contentExt;
}

void FeedProvider::BookLoaded(int error, std::shared_ptr<Entry> entry, const std::string &file) {
  LP_LOG(LP_LOG_INFO, "BOOK LOADED: %s.", entry->id.c_str());
  const auto record = data_manager_.GetLastDownloadInfo();
  const QString id = QString::fromLatin1(entry->id.c_str());
  if (error != 0) {
    emit bookDownloadFailed(QString::fromStdString(file), id, record.transfer_error, 0);
    return;
  }
  const std::string fileExt = fileExtension(file);
  const std::string contentExt = GetContentMimeToExtension(record.content_type);
  const std::string dispositionExt = fileExtension(record.disposition_filename);
  LP_LOG(LP_LOG_INFO, "\n+++++ Book loaded info: disp_filename [%s], content_ext [%s], filename [%s].",
         record.disposition_filename.c_str(), record.content_type.c_str(), file.c_str());
  if (record.content_type.find("application/json") != std::string::npos) {
    int code = -1;
    std::string message;
    ParseErrorCode(file, code, message);
    std::remove(devicePath(file).c_str());
    emit bookDownloadFailed(QString::fromStdString(file), id, 2, code);
    return;
  }
  const std::string wanted = wantedExtension(fileExt, contentExt, dispositionExt);
  if (wanted.find("htm") != std::string::npos) {
    std::remove(devicePath(file).c_str());
    LP_LOG(LP_LOG_ERROR, "download html file");
    emit bookDownloadFailed(QString::fromStdString(file), id, 2, 0);
    return;
  }
  if (!wanted.empty() && wanted != fileExt) {
    std::string renamed = file;
    const auto slash = renamed.rfind('/');
    const auto at = renamed.find(fileExt, slash == std::string::npos ? 0 : slash);
    if (at != std::string::npos) renamed.replace(at, fileExt.size(), wanted);
    std::rename(devicePath(file).c_str(), devicePath(renamed).c_str());
    LP_LOG(LP_LOG_INFO, "change extension due disposition_filename");
    emitLoaded(renamed, *entry);
    return;
  }
  emitLoaded(file, *entry);
}

void FeedProvider::emitLoaded(const std::string &file, const Entry &entry) {
  const QString author = entry.author ? QString::fromLatin1(entry.author->name.c_str()) : QString();
  emit bookDownloaded(QString::fromStdString(file), QString::fromLatin1(entry.id.c_str()),
                      QString::fromLatin1(entry.title.c_str()), author);
}
