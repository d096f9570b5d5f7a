#include "http_request_runner.h"

#include <curl/curl.h>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>

#include "lp_log.h"

namespace lumenpress::utilities {

namespace {

using EasyHandle = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using HeaderList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

size_t appendBody(char *data, size_t size, size_t count, void *target) {
  auto *body = static_cast<std::vector<char> *>(target);
  body->insert(body->end(), data, data + size * count);
  return size * count;
}

// Loopback never goes through a proxy: the local store and test servers live there.
std::string noProxyList() {
  const char *configured = std::getenv("no_proxy");
  if (!configured) configured = std::getenv("NO_PROXY");
  std::string list = configured ? configured : "";
  if (!list.empty()) list += ',';
  return list + "localhost,127.0.0.1,::1";
}

std::string withoutQuery(const std::string &url) {
  return url.substr(0, url.find('?'));
}

void setMethodAndBody(CURL *curl, const HttpRequest &request) {
  const std::string &method = request.method();
  const std::string &body = request.post_data();
  if (method == "GET") return;
  if (method == "HEAD") {
    curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
    return;
  }
  if (method != "POST") curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, method.c_str());
  if (method == "POST" || !body.empty()) {
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(curl, CURLOPT_COPYPOSTFIELDS, body.c_str());
  }
}

HeaderList headerList(const HttpRequest &request) {
  curl_slist *list = nullptr;
  for (const auto &line : request.GetHeaders()) list = curl_slist_append(list, line.c_str());
  // Without this, libcurl waits for a "100 Continue" before sending larger bodies.
  list = curl_slist_append(list, "Expect:");
  return HeaderList(list, curl_slist_free_all);
}

}  // namespace

HttpRequestRunner::HttpRequestRunner() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

int HttpRequestRunner::PerformRequest(const HttpRequest &request, long *httpCode, std::vector<char> *response,
                                      int timeoutSeconds) {
  std::vector<char> body;
  long status = 0;
  EasyHandle curl(curl_easy_init(), curl_easy_cleanup);
  LP_CHECK_RET(curl, static_cast<int>(CURLE_FAILED_INIT));

  const std::string url = request.encoded_url();
  const std::string no_proxy = noProxyList();
  const HeaderList headers = headerList(request);
  curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
  setMethodAndBody(curl.get(), request);
  curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, headers.get());
  curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, appendBody);
  curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &body);
  curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT, static_cast<long>(timeoutSeconds));
  curl_easy_setopt(curl.get(), CURLOPT_NOPROXY, no_proxy.c_str());
  curl_easy_setopt(curl.get(), CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(curl.get(), CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(curl.get(), CURLOPT_SSL_VERIFYHOST, 2L);

  const CURLcode result = curl_easy_perform(curl.get());
  if (result == CURLE_OK) curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
  if (result != CURLE_OK || status == 0) {
    LP_LOG(LP_LOG_ERROR, "%s %s failed: %s", request.method().c_str(), withoutQuery(url).c_str(),
           curl_easy_strerror(result));
    if (httpCode) *httpCode = 0;
    if (response) response->clear();
    return result != CURLE_OK ? static_cast<int>(result) : static_cast<int>(CURLE_RECV_ERROR);
  }
  body.push_back('\0');
  if (httpCode) *httpCode = status;
  if (response) *response = std::move(body);
  return 0;
}

}  // namespace lumenpress::utilities
