#include "bookstore_api.h"

#include "http_request_runner.h"
#include "lp_log.h"
#include "panelkit.h"
#include "response_body.h"
#include "token_file.h"

using lumenpress::bookstore::ResponseBody;
using lumenpress::bookstore::TokenFile;
using lumenpress::utilities::HttpRequestRunner;

namespace {

// The model's number is what follows its last character that is no digit and no dash.
std::string modelNumberOf(const std::string &model) {
  const auto last = model.find_last_not_of("0123456789-");
  return last == std::string::npos ? std::string() : model.substr(last + 1);
}

}  // namespace

BookstoreApi::BookstoreApi(std::function<void()> tokensChanged)
    : baseUrl_(LP_DEFAULT_STORE_URL), tokensChanged(std::move(tokensChanged)) {
  TokenFile::read(&accessToken, &refreshToken_);
  modelNumber = modelNumberOf(GetDeviceModel());
  notifyTokensChanged();
}

void BookstoreApi::setTokens(const std::string &access, const std::string &refresh) {
  {
    std::lock_guard<std::mutex> lock(tokenMutex);
    storeTokens(access, refresh);
  }
  notifyTokensChanged();
}

void BookstoreApi::clearTokens() {
  {
    std::lock_guard<std::mutex> lock(tokenMutex);
    accessToken.clear();
    refreshToken_.clear();
    refreshDone.notify_all();
  }
  notifyTokensChanged();
}

bool BookstoreApi::hasAccessToken() const {
  std::lock_guard<std::mutex> lock(tokenMutex);
  return !accessToken.empty();
}

std::string BookstoreApi::currentAccessToken() const {
  std::lock_guard<std::mutex> lock(tokenMutex);
  return accessToken;
}

std::string BookstoreApi::currentRefreshToken() const {
  std::lock_guard<std::mutex> lock(tokenMutex);
  return refreshToken_;
}

std::string BookstoreApi::accessTokenForRequest() const {
  std::unique_lock<std::mutex> lock(tokenMutex);
  refreshDone.wait(lock, [this] { return !refreshInProgress; });
  return accessToken;
}

std::string BookstoreApi::baseUrl() const {
  std::lock_guard<std::mutex> lock(baseUrlMutex);
  return baseUrl_;
}

void BookstoreApi::setBaseUrl(const std::string &url) {
  std::string root = url;
  if (!root.empty() && root.back() == '/') root.pop_back();
  std::lock_guard<std::mutex> lock(baseUrlMutex);
  baseUrl_ = root;
}

void BookstoreApi::setErrorCallback(std::function<void(int err, int code)> cb) {
  std::lock_guard<std::mutex> lock(tokenMutex);
  errorCallback = std::move(cb);
}

BookstoreApi::ApiError BookstoreApi::refreshToken(const std::string oldAccessToken) {
  std::unique_lock<std::mutex> lock(tokenMutex);
  if (accessToken.empty() || refreshToken_.empty()) return kRefreshFailed;
  if (refreshInProgress) {
    refreshDone.wait(lock, [this] { return !refreshInProgress; });
    return accessToken.empty() ? kNotAuthorized : kNoError;
  }
  if (oldAccessToken != accessToken) return kNoError;
  refreshInProgress = true;
  refreshDone.notify_all();
  Json::Value body;
  body["access_token"] = accessToken;
  body["refresh_token"] = refreshToken_;
  body["device_id"] = GetSerialNumber();
  lock.unlock();

  HttpRequest request = newRequest("POST", "/rest/V1/customer-token/refresh");
  addJsonBody(&request, body);
  long code = 0;
  std::vector<char> response;
  const int err = HttpRequestRunner().PerformRequest(request, &code, &response, kTimeoutSeconds);

  lock.lock();
  refreshInProgress = false;
  refreshDone.notify_all();
  if (err != 0) return kNetworkError;
  if (code == 200) return storeRefreshedToken(response, lock);
  return refusedRefresh(code, lock);
}

BookstoreApi::ApiError BookstoreApi::storeRefreshedToken(const std::vector<char> &response,
                                                         std::unique_lock<std::mutex> &lock) {
  // A logout while the refresh was on the wire wins over its result.
  if (refreshToken_.empty()) return kFail;
  std::string fresh;
  if (!ResponseBody::unquote(response, &fresh)) return kNoError;
  storeTokens(fresh, refreshToken_);
  lock.unlock();
  notifyTokensChanged();
  return kNoError;
}

// A refused refresh token ends the session's access but keeps the refresh token, so that the
// session layer can still tell a logout from an expiry.
BookstoreApi::ApiError BookstoreApi::refusedRefresh(long code, std::unique_lock<std::mutex> &lock) {
  const bool unauthorized = code == 401;
  if (unauthorized) accessToken.clear();
  lock.unlock();
  LP_LOG(LP_LOG_ERROR, "refresh failed err = %d, code = %d", 0, static_cast<int>(code));
  reportError(0, code);
  if (!unauthorized) return kRefreshFailed;
  notifyTokensChanged();
  return kNotAuthorized;
}

BookstoreApi::ApiError BookstoreApi::performRequestWithRefreshing(const HttpRequest &request, long *code,
                                                                  std::vector<char> *response) {
  if (!sendLogged(request, code, response)) return kNetworkError;
  if (*code == 401) {
    ApiError refreshed = refreshAfterUnauthorized(code, response);
    if (refreshed != kNoError) return refreshed;
    if (!sendLogged(request, code, response)) return kNetworkError;
    if (*code == 401) {
      refreshed = refreshAfterUnauthorized(code, response);
      if (refreshed != kNoError) return refreshed;
    }
  }
  if (*code == 200) return kNoError;
  reportError(0, *code);
  return kHttpError;
}

bool BookstoreApi::sendLogged(const HttpRequest &request, long *code, std::vector<char> *response) {
  const int err = HttpRequestRunner().PerformRequest(request, code, response, kTimeoutSeconds);
  if (err == 0) return true;
  LP_LOG(LP_LOG_ERROR, "performRequestWithRefreshing failed err = %d, code = %d", err, static_cast<int>(*code));
  reportError(err, *code);
  return false;
}

BookstoreApi::ApiError BookstoreApi::refreshAfterUnauthorized(long *code, std::vector<char> *response) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  const ApiError refreshed = refreshToken(token);
  if (refreshed != kNoError) return refreshed;
  response->clear();
  *code = 0;
  return kNoError;
}

BookstoreApi::ApiError BookstoreApi::perform(bool retryOnUnauthorized, const std::string &token,
                                             const HttpRequest &request, const CallReport &report,
                                             const Answered &answered, const Retry &retry) {
  long code = 0;
  std::vector<char> response;
  const int err = HttpRequestRunner().PerformRequest(request, &code, &response, kTimeoutSeconds);
  if (err != 0) {
    LP_LOG(LP_LOG_ERROR, "%s failed err = %d, code = %d", report.name, err, static_cast<int>(code));
    if (report.transportCallback) reportError(err, code);
    return kNetworkError;
  }
  if (code == 200) return answered(response);
  if (code == 401) {
    if (!retryOnUnauthorized) return kNotAuthorized;
    const ApiError refreshed = refreshToken(token);
    return refreshed == kNoError ? retry() : refreshed;
  }
  if (report.statusCallback) reportError(0, code);
  return kHttpError;
}

BookstoreApi::HttpRequest BookstoreApi::newRequest(const std::string &method, const std::string &path) const {
  return HttpRequest(method, baseUrl() + path);
}

void BookstoreApi::addJsonBody(HttpRequest *request, const Json::Value &body) {
  request->AddHeader("Content-Type", "application/json");
  request->AddPostData(Json::FastWriter().write(body));
}

void BookstoreApi::addSharedHeaders(HttpRequest *request, const std::string &token) const {
  for (const auto &header : extraHeaders) request->AddHeader(header.first, header.second);
  if (!token.empty()) request->AddHeader("Authorization", "Bearer " + token);
}

BookstoreApi::HttpRequest BookstoreApi::authorisedPost(const std::string &path, const std::string &token,
                                                       const Json::Value &body) const {
  HttpRequest request = newRequest("POST", path);
  addJsonBody(&request, body);
  addSharedHeaders(&request, token);
  return request;
}

// Called with tokenMutex held.
void BookstoreApi::storeTokens(const std::string &access, const std::string &refresh) {
  accessToken = access;
  refreshToken_ = refresh;
  TokenFile::write(accessToken, refreshToken_);
}

void BookstoreApi::reportError(int err, long code) const {
  std::function<void(int, int)> callback;
  {
    std::lock_guard<std::mutex> lock(tokenMutex);
    callback = errorCallback;
  }
  if (callback) callback(err, static_cast<int>(code));
}

void BookstoreApi::notifyTokensChanged() const {
  if (tokensChanged) tokensChanged();
}

std::string BookstoreApi::paymentSource() const {
  return "e-ink " + modelNumber;
}
