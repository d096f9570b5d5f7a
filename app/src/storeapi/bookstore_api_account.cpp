// The account's calls: e-mail check, stores, new account, newsletter, login, user record.
#include <ctime>

#include "bookstore_api.h"
#include "cfg_wrapper.h"
#include "http_request_runner.h"
#include "json_member.h"
#include "lp_log.h"
#include "panelkit.h"
#include "response_body.h"

using lumenpress::bookstore::JsonMember;
using lumenpress::bookstore::ResponseBody;
using lumenpress::utilities::CfgWrapper;
using lumenpress::utilities::HttpRequestRunner;

namespace {

std::string utcTime() {
  char text[128] = {};
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  std::strftime(text, sizeof text, "%c", &utc);
  return text;
}

std::string deviceLanguage() {
  const CfgWrapper global("/mnt/ext1/system/config/global.cfg", 0);
  return global.read<std::string>("language", "en");
}

}  // namespace

// The store answers a bare boolean, or an error object on a malformed address; one text search
// reads both.
BookstoreApi::ApiError BookstoreApi::checkUser(const std::string &email, bool *exists) {
  Json::Value body;
  body["email"] = email;
  long code = 0;
  std::vector<char> response;
  const int err = postPlain("/rest/V1/is-customer/exist", body, &code, &response);
  if (err != 0 || code != 200) {
    LP_LOG(LP_LOG_ERROR, "checkUser failed err = %d, code = %d", err, static_cast<int>(code));
    reportError(err, code);
    return err != 0 ? kNetworkError : kFail;
  }
  const std::string text = ResponseBody::text(response);
  if (text.find("true") != std::string::npos || text.find("false") != std::string::npos) {
    *exists = text.find("true") != std::string::npos;
    return kNoError;
  }
  return text.find("Email has a wrong format") != std::string::npos ? kWrongEmailFormat : kFail;
}

std::vector<BookstoreApi::StoreInfo> BookstoreApi::getStores(const std::string &code) {
  Json::Value body;
  body["code"] = code;
  body["model"] = GetDeviceModel();
  body["time"] = utcTime();
  body["language"] = deviceLanguage();
  const HttpRequest request = authorisedPost("/rest/V1/device-integration/stores-all", accessTokenForRequest(), body);
  long status = 0;
  std::vector<char> response;
  const int err = HttpRequestRunner().PerformRequest(request, &status, &response, kTimeoutSeconds);
  if (err != 0 || status != 200) {
    LP_LOG(LP_LOG_ERROR, "getStores failed err = %d, code = %d", err, static_cast<int>(status));
    reportError(err, status);
    return {};
  }
  Json::Value stores;
  ResponseBody::parse(response, &stores);
  if (!stores.isArray()) {
    LP_LOG(LP_LOG_ERROR, "Invalid response format");
    return {};
  }
  std::vector<StoreInfo> result;
  for (const Json::Value &store : stores) {
    result.push_back({JsonMember::text(store, "url"), JsonMember::text(store, "language"),
                      JsonMember::text(store, "langCode"), JsonMember::text(store, "status") == "disable"});
  }
  return result;
}

BookstoreApi::ApiError BookstoreApi::createAccount(const std::string &email, const std::string &firstname,
                                                   const std::string &lastname, const std::string &password) {
  Json::Value body;
  body["customer"]["email"] = email;
  body["customer"]["firstname"] = firstname;
  body["customer"]["lastname"] = lastname;
  body["password"] = password;
  long code = 0;
  std::vector<char> response;
  const int err = postPlain("/rest/V1/customers", body, &code, &response);
  if (err == 0 && code == 200) return kNoError;
  LP_LOG(LP_LOG_ERROR, "createAccount failed err = %d, code = %d", err, static_cast<int>(code));
  reportError(err, code);
  return kHttpError;
}

BookstoreApi::ApiError BookstoreApi::setSubscription(int marketing) {
  Json::Value body;
  body["access_token"] = currentAccessToken();
  body["marketing"] = marketing;
  long code = 0;
  std::vector<char> response;
  const int err = postPlain("/rest/V1/customer-set/subscription", body, &code, &response);
  if (err != 0 || code != 200) return kFail;
  response.push_back('\0');
  return ResponseBody::text(response) == "true" ? kNoError : kFail;
}

BookstoreApi::LoginInfo BookstoreApi::auth(const std::string &email, const std::string &password) {
  Json::Value body;
  body["email"] = email;
  body["password"] = password;
  body["device_id"] = GetSerialNumber();
  long code = 0;
  std::vector<char> response;
  const int err = postPlain("/rest/V1/user-get/tokens", body, &code, &response);

  LoginInfo info;
  Json::Value answer;
  if (err != 0 || code != 200) {
    reportError(err, code);
    std::unique_lock<std::mutex> lock(tokenMutex);
    // Every failed login ends the session it replaces, a mistyped password too.
    storeTokens("", "");
    ResponseBody::parse(response, &answer);
    LP_LOG(LP_LOG_ERROR, "auth failed err = %d, code = %d", err, static_cast<int>(code));
    info.code = err != 0 ? -1 : JsonMember::integer(answer, "code");
    lock.unlock();
    notifyTokensChanged();
    return info;
  }
  ResponseBody::parse(response, &answer);
  info.access_token = JsonMember::text(answer, "access_token");
  info.refresh_token = JsonMember::text(answer, "refresh_token");
  info.expires_in = JsonMember::text(answer, "expires_in");
  {
    std::unique_lock<std::mutex> lock(tokenMutex);
    refreshDone.wait(lock, [this] { return !refreshInProgress; });
    storeTokens(info.access_token, info.refresh_token);
  }
  notifyTokensChanged();
  return info;
}

BookstoreApi::ApiError BookstoreApi::getUserInfo(UserInfo *out) {
  return getUserInfoImpl(true, out);
}

BookstoreApi::ApiError BookstoreApi::getUserInfoImpl(bool retryOnUnauthorized, UserInfo *out) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  HttpRequest request = newRequest("GET", "/rest/V1/customers/me/");
  addSharedHeaders(&request, token);
  const auto answered = [out](const std::vector<char> &response) {
    Json::Value user;
    if (!ResponseBody::parse(response, &user)) {
      LP_LOG(LP_LOG_ERROR, "Failed to parse json %s", ResponseBody::text(response).c_str());
      return kFail;
    }
    if (out) {
      *out = {JsonMember::integer(user, "id"), JsonMember::text(user, "email"), JsonMember::text(user, "firstname"),
              JsonMember::text(user, "lastname")};
    }
    return kNoError;
  };
  return perform(retryOnUnauthorized, token, request, {"getUserInfo"}, answered,
                 [this, out] { return getUserInfoImpl(false, out); });
}

int BookstoreApi::postPlain(const char *path, const Json::Value &body, long *code, std::vector<char> *response) {
  HttpRequest request = newRequest("POST", path);
  addJsonBody(&request, body);
  return HttpRequestRunner().PerformRequest(request, code, response, kTimeoutSeconds);
}
