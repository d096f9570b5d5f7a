#include "http_fetcher.h"

#include <curl/curl.h>

#include <strings.h>
#include <cstring>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>

namespace lumenpress::opds {

namespace {

using EasyHandle = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using HeaderList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

struct Transfer {
  HttpFetcher::Result *result;
  FILE *file;
  const HttpFetcher::Progress *progress;
};

std::string trimmed(const std::string &text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bool headerIs(const std::string &line, const char *name, std::string *value) {
  const size_t length = std::char_traits<char>::length(name);
  if (line.size() <= length || line[length] != ':' || strncasecmp(line.c_str(), name, length) != 0) return false;
  *value = trimmed(line.substr(length + 1));
  return true;
}

size_t onHeader(char *data, size_t size, size_t count, void *target) {
  auto *result = static_cast<Transfer *>(target)->result;
  const std::string line(data, size * count);
  // A redirect or 100-continue starts a new header block: only the last one counts.
  if (line.compare(0, 5, "HTTP/") == 0) *result = HttpFetcher::Result{};
  headerIs(line, "ETag", &result->etag) || headerIs(line, "Last-Modified", &result->last_modified) ||
      headerIs(line, "Content-Type", &result->content_type) ||
      headerIs(line, "Content-Disposition", &result->content_disposition);
  return size * count;
}

size_t onBody(char *data, size_t size, size_t count, void *target) {
  auto *transfer = static_cast<Transfer *>(target);
  if (transfer->file) return std::fwrite(data, size, count, transfer->file) * size;
  transfer->result->body.append(data, size * count);
  return size * count;
}

// Catalogues hand over links as they stand, a search term with its blanks and letters beyond
// ASCII included; what a URL may not carry goes on the wire percent-encoded, the rest unchanged.
std::string wireUrl(const std::string &url) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string wire;
  wire.reserve(url.size());
  for (const unsigned char c : url) {
    if (c <= 0x20 || c >= 0x7F || std::strchr("\"<>\\^`{|}", c)) {
      wire += '%';
      wire += kHex[c >> 4];
      wire += kHex[c & 0xF];
    } else {
      wire += static_cast<char>(c);
    }
  }
  return wire;
}

int onProgress(void *target, curl_off_t total, curl_off_t now, curl_off_t, curl_off_t) {
  const auto *progress = static_cast<Transfer *>(target)->progress;
  if (!progress || !*progress) return 0;
  const int percent = total > 0 ? static_cast<int>(now * 100 / total) : 0;
  return (*progress)(percent) ? 0 : 1;
}

}  // namespace

HttpFetcher::HttpFetcher(std::string user_agent, std::map<std::string, std::string> headers)
    : user_agent_(std::move(user_agent)), headers_(std::move(headers)) {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

long HttpFetcher::timeoutSeconds() {
  const char *configured = std::getenv("LUMENPRESS_OPDS_TIMEOUT");
  const long seconds = configured ? std::strtol(configured, nullptr, 10) : 0;
  return seconds > 0 ? seconds : 30;
}

HttpFetcher::Result HttpFetcher::get(const std::string &url) const {
  return perform(url, nullptr, nullptr);
}

HttpFetcher::Result HttpFetcher::download(const std::string &url, const std::string &path,
                                          const Progress &progress) const {
  FILE *file = std::fopen(path.c_str(), "wb");
  if (!file) {
    Result result;
    result.transport_error = CURLE_WRITE_ERROR;
    return result;
  }
  Result result = perform(url, file, &progress);
  if (std::fflush(file) != 0 || fsync(fileno(file)) != 0) result.transport_error = CURLE_WRITE_ERROR;
  std::fclose(file);
  return result;
}

HttpFetcher::Result HttpFetcher::perform(const std::string &url, FILE *file, const Progress *progress) const {
  Result result;
  EasyHandle curl(curl_easy_init(), curl_easy_cleanup);
  if (!curl) {
    result.transport_error = CURLE_FAILED_INIT;
    return result;
  }
  curl_slist *list = nullptr;
  for (const auto &[name, value] : headers_) list = curl_slist_append(list, (name + ": " + value).c_str());
  const HeaderList headers(list, curl_slist_free_all);
  Transfer transfer{&result, file, progress};
  const long timeout = timeoutSeconds();

  const std::string wire = wireUrl(url);
  curl_easy_setopt(curl.get(), CURLOPT_URL, wire.c_str());
  curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, headers.get());
  curl_easy_setopt(curl.get(), CURLOPT_USERAGENT, user_agent_.c_str());
  // Links come from the network: no other scheme may reach a local file or port, not even by a redirect.
  curl_easy_setopt(curl.get(), CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(curl.get(), CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(curl.get(), CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(curl.get(), CURLOPT_MAXREDIRS, 5L);
  curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(curl.get(), CURLOPT_CONNECTTIMEOUT, timeout);
  // A download may be long; only a transfer that stalls for the time-out is given up.
  curl_easy_setopt(curl.get(), CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(curl.get(), CURLOPT_LOW_SPEED_TIME, timeout);
  if (!file) curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT, timeout);
  curl_easy_setopt(curl.get(), CURLOPT_NOPROXY, "localhost,127.0.0.1,::1");
  curl_easy_setopt(curl.get(), CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(curl.get(), CURLOPT_HEADERFUNCTION, onHeader);
  curl_easy_setopt(curl.get(), CURLOPT_HEADERDATA, &transfer);
  curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, onBody);
  curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &transfer);
  curl_easy_setopt(curl.get(), CURLOPT_XFERINFOFUNCTION, onProgress);
  curl_easy_setopt(curl.get(), CURLOPT_XFERINFODATA, &transfer);
  curl_easy_setopt(curl.get(), CURLOPT_NOPROGRESS, progress ? 0L : 1L);

  CURLcode code = curl_easy_perform(curl.get());
  curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &result.status);
  if (code == CURLE_OK && result.status == 0) code = CURLE_WEIRD_SERVER_REPLY;
  result.transport_error = static_cast<int>(code);
  return result;
}

}  // namespace lumenpress::opds
