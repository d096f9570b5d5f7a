#include "book_downloader.h"

#include <curl/curl.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <filesystem>

#include "book_file_check.h"
#include "device_path.h"
#include "feed_loader.h"
#include "lp_log.h"
#include "stale_file_sweeper.h"

namespace lumenpress::opds {

namespace {

std::string decoded(const std::string &text) {
  int length = 0;
  char *plain = curl_easy_unescape(nullptr, text.c_str(), static_cast<int>(text.size()), &length);
  std::string out = plain ? std::string(plain, static_cast<size_t>(length)) : text;
  curl_free(plain);
  return out;
}

// Only a bare name may come from the network: no folders, no hidden or special names.
std::string safeName(std::string name) {
  const auto slash = name.find_last_of("/\\");
  if (slash != std::string::npos) name.erase(0, slash + 1);
  while (!name.empty() && name.front() == '.') name.erase(0, 1);
  for (char &c : name) {
    if (static_cast<unsigned char>(c) < 0x20) c = '_';
  }
  return name;
}

std::string urlName(const std::string &url) {
  const std::string path = url.substr(0, url.find_first_of("?#"));
  const auto slash = path.rfind('/');
  return safeName(decoded(slash == std::string::npos ? path : path.substr(slash + 1)));
}

std::string quotedOrPlain(const std::string &text) {
  if (!text.empty() && text.front() == '"') return text.substr(1, text.find('"', 1) - 1);
  return text.substr(0, text.find(';'));
}

std::string temporaryPath(const std::string &folder) {
  static std::atomic<unsigned> counter{0};
  return folder + "/.download-" + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".part";
}

BookDownloader::Result failed(BookDownloader::Result result, const std::string &temp, int error) {
  std::remove(temp.c_str());
  result.error = error;
  return result;
}

// Downloads cut off by a kill are swept from a folder when this process first downloads into it.
platform::StaleFileSweeper &partSweeper() {
  static platform::StaleFileSweeper sweeper(R"(\.download-([0-9]+)-[0-9]+\.part)");
  return sweeper;
}

}  // namespace

BookDownloader::BookDownloader(const CredentialStore &credentials) : credentials_(credentials) {}

std::string BookDownloader::dispositionName(const std::string &header) {
  const auto extended = header.find("filename*=");
  if (extended != std::string::npos) {
    std::string value = quotedOrPlain(header.substr(extended + 10));
    const auto quote = value.find("''");
    if (quote != std::string::npos) return safeName(decoded(value.substr(quote + 2)));
  }
  const auto plain = header.find("filename=");
  if (plain == std::string::npos) return {};
  return safeName(quotedOrPlain(header.substr(plain + 9)));
}

BookDownloader::Result BookDownloader::download(const std::string &url, const std::string &folder,
                                                const std::string &fallback_name, const std::string &user_agent,
                                                const HttpFetcher::Progress &progress) const {
  Result result;
  const std::string real_folder = platform::MapDevicePath(folder);
  std::error_code error;
  std::filesystem::create_directories(real_folder, error);
  partSweeper().sweepOnce(real_folder);
  const std::string temp = temporaryPath(real_folder);
  const HttpFetcher::Result response =
      HttpFetcher(user_agent, credentials_.headersFor(url)).download(url, temp, progress);
  result.info.transfer_error = response.transport_error;
  result.info.content_type = response.content_type;
  result.info.disposition_filename = dispositionName(response.content_disposition);

  if (response.transport_error != 0 || response.status != 200) {
    LP_LOG(LP_LOG_ERROR, "Download of %s failed: error %d, status %ld", url.c_str(), response.transport_error,
           response.status);
    const int failure = response.transport_error != 0 ? FeedLoader::kTransportError : static_cast<int>(response.status);
    return failed(std::move(result), temp, failure);
  }
  std::string name = result.info.disposition_filename;
  if (name.empty()) name = urlName(url);
  if (name.empty()) name = safeName(fallback_name);
  if (!BookFileCheck::looksWhole(temp)) {
    LP_LOG(LP_LOG_ERROR, "Download of %s ended short of a whole %s", url.c_str(), name.c_str());
    result.info.transfer_error = CURLE_PARTIAL_FILE;
    return failed(std::move(result), temp, FeedLoader::kTransportError);
  }
  if (std::rename(temp.c_str(), (real_folder + "/" + name).c_str()) != 0) {
    return failed(std::move(result), temp, FeedLoader::kTransportError);
  }
  result.file = folder + "/" + name;
  return result;
}

}  // namespace lumenpress::opds
