#include "http_request_runner.h"

#include <curl/curl.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <string>

#include "lp_log.h"
#include "service_address.h"

namespace lumenpress::utilities {

namespace {

using EasyHandle = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using HeaderList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

// A dead route fails here rather than using up the whole exchange's time.
constexpr long kConnectTimeoutSeconds = 15;

size_t appendBody(char *data, size_t size, size_t count, void *target) {
  auto *body = static_cast<std::vector<char> *>(target);
  try {
    body->insert(body->end(), data, data + size * count);
  } catch (const std::bad_alloc &) {
    return 0;  // libcurl ends the transfer with a write error
  }
  return size * count;
}

// libcurl still reads the proxy variables itself; this list only replaces its reading of
// no_proxy, so loopback, where the local store and test servers live, is never proxied.
std::string noProxyList() {
  const char *configured = std::getenv("no_proxy");
  if (!configured || !*configured) configured = std::getenv("NO_PROXY");
  std::string list = configured ? configured : "";
  if (!list.empty()) list += ',';
  return list + "localhost,127.0.0.0/8,::1";
}

// What may go to the log: no query, no fragment, no credentials before the host.
std::string loggableUrl(const std::string &url) {
  std::string shown = url.substr(0, url.find_first_of("?#"));
  const auto hostStart = shown.find("://");
  if (hostStart == std::string::npos) return shown;
  const auto at = shown.find('@', hostStart + 3);
  if (at != std::string::npos && at < shown.find('/', hostStart + 3)) shown.erase(hostStart + 3, at - hostStart - 2);
  return shown;
}

void setMethodAndBody(CURL *curl, const HttpRequest &request) {
  const std::string &method = request.method();
  const std::string &body = request.post_data();
  if (method == "HEAD") {
    curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
    return;
  }
  // Methods that carry a body send one even when it is empty, so the server sees Content-Length: 0.
  const bool sendsBody = !body.empty() || method == "POST" || method == "PUT" || method == "PATCH";
  if (sendsBody) {
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(curl, CURLOPT_COPYPOSTFIELDS, body.c_str());
  }
  // libcurl names the method after what it sends; any other is named outright.
  if (method != (sendsBody ? "POST" : "GET")) curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, method.c_str());
}

HeaderList headerList(const HttpRequest &request) {
  curl_slist *list = nullptr;
  for (const auto &line : request.GetHeaders()) list = curl_slist_append(list, line.c_str());
  // Without this, libcurl waits for a "100 Continue" before sending larger bodies.
  list = curl_slist_append(list, "Expect:");
  return HeaderList(list, curl_slist_free_all);
}

void setTimeouts(CURL *curl, int timeoutSeconds) {
  const long whole = timeoutSeconds > 0 ? timeoutSeconds : 0;
  const long connect = whole > 0 ? std::min(whole, kConnectTimeoutSeconds) : kConnectTimeoutSeconds;
  curl_easy_setopt(curl, CURLOPT_TIMEOUT, whole);
  curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, connect);
}

void setTransport(CURL *curl) {
  curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(curl, CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
}

}  // namespace

HttpRequestRunner::HttpRequestRunner() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

int HttpRequestRunner::PerformRequest(const HttpRequest &request, long *httpCode, std::vector<char> *response,
                                      int timeoutSeconds) {
  if (httpCode) *httpCode = 0;
  if (response) response->clear();
  EasyHandle curl(curl_easy_init(), curl_easy_cleanup);
  LP_CHECK_RET(curl, static_cast<int>(CURLE_FAILED_INIT));

  const std::string url = ServiceAddress::resolve(request.encoded_url());
  const std::string noProxy = noProxyList();
  const HeaderList headers = headerList(request);
  std::vector<char> body;
  char error[CURL_ERROR_SIZE] = "";
  curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
  setMethodAndBody(curl.get(), request);
  curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, headers.get());
  curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, appendBody);
  curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &body);
  curl_easy_setopt(curl.get(), CURLOPT_ERRORBUFFER, error);
  curl_easy_setopt(curl.get(), CURLOPT_NOPROXY, noProxy.c_str());
  setTimeouts(curl.get(), timeoutSeconds);
  setTransport(curl.get());

  CURLcode result = curl_easy_perform(curl.get());
  long status = 0;
  if (result == CURLE_OK) curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
  if (result == CURLE_OK && status == 0) result = CURLE_WEIRD_SERVER_REPLY;
  if (result != CURLE_OK) {
    LP_LOG(LP_LOG_ERROR, "%s %s failed with %d: %s", request.method().c_str(), loggableUrl(url).c_str(),
           static_cast<int>(result), *error ? error : curl_easy_strerror(result));
    return static_cast<int>(result);
  }
  body.push_back('\0');
  if (httpCode) *httpCode = status;
  if (response) *response = std::move(body);
  return 0;
}

}  // namespace lumenpress::utilities
