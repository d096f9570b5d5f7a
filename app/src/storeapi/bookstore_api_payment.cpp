// Payment methods, stored cards, rebill, and the card gateway, which is posted to directly.
#include <curl/curl.h>

#include "bookstore_api.h"
#include "http_request_runner.h"
#include "json_member.h"
#include "lp_log.h"
#include "panelkit.h"
#include "response_body.h"

using lumenpress::bookstore::JsonMember;
using lumenpress::bookstore::ResponseBody;
using lumenpress::utilities::HttpRequestRunner;

namespace {

size_t appendBody(char *data, size_t size, size_t count, void *response) {
  static_cast<std::vector<char> *>(response)->insert(static_cast<std::vector<char> *>(response)->end(), data,
                                                     data + size * count);
  return size * count;
}

// The handle and header list of one gateway post, released however the post ends.
struct CurlTransfer {
  CURL *handle = curl_easy_init();
  curl_slist *headers = nullptr;
  ~CurlTransfer() {
    if (handle) curl_easy_cleanup(handle);
    curl_slist_free_all(headers);
  }
};

template <typename Value>
bool setOption(CURL *handle, CURLoption option, Value value) {
  const CURLcode err = curl_easy_setopt(handle, option, value);
  if (err == CURLE_OK) return true;
  LP_LOG(LP_LOG_ERROR, "Condition %s failed. curl_easy_setopt failed with [%d]", "0 == err", static_cast<int>(err));
  return false;
}

// A POST sends what follows the first "?" of the URL as its form, to what stands in front of it.
bool setTarget(CURL *handle, const std::string &method, const std::string &url, std::string *form) {
  if (method != "POST") return setOption(handle, CURLOPT_URL, url.c_str());
  const auto question = url.find('?');
  const std::string where = question == std::string::npos ? url : url.substr(0, question);
  *form = question == std::string::npos ? std::string() : url.substr(question + 1);
  return setOption(handle, CURLOPT_URL, where.c_str()) && setOption(handle, CURLOPT_POST, 1L) &&
         setOption(handle, CURLOPT_POSTFIELDS, form->c_str()) &&
         setOption(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(form->size()));
}

void setProxy(CURL *handle) {
  char *proxy = get_proxy();
  if (!proxy) return;
  curl_easy_setopt(handle, CURLOPT_PROXY, proxy);
  clean_proxy_object(proxy);
}

}  // namespace

BookstoreApi::ApiError BookstoreApi::getPaymentMethods(std::vector<PaymentMethodInfo> *methods) {
  return readPaymentMethods("getPaymentMethodsImpl", "/rest/V1/customer-get/payment-methods", false, methods);
}

BookstoreApi::ApiError BookstoreApi::getPaymentMethods2(std::vector<PaymentMethodInfo> *methods) {
  return readPaymentMethods("getPaymentMethods2", "/rest/V1/device-payment/methods", true, methods);
}

// Both lists are the same call at two addresses; the newer one tells more of each method.
BookstoreApi::ApiError BookstoreApi::readPaymentMethods(const char *name, const char *path, bool extended,
                                                        std::vector<PaymentMethodInfo> *methods) {
  HttpRequest request = newRequest("GET", path);
  request.AddHeader("Content-Type", "application/json");
  addSharedHeaders(&request, accessTokenForRequest());
  request.AddGetParam("number", GetSerialNumber());
  long code = 0;
  std::vector<char> response;
  const int err = HttpRequestRunner().PerformRequest(request, &code, &response, kTimeoutSeconds);
  if (err != 0) {
    LP_LOG(LP_LOG_ERROR, "%s failed err = %d, code = %d", name, err, static_cast<int>(code));
    reportError(err, code);
    return kNetworkError;
  }
  if (code != 200) {
    reportError(0, code);
    return kHttpError;
  }
  Json::Value list;
  ResponseBody::parse(response, &list);
  if (!list.isArray()) {
    LP_LOG(LP_LOG_ERROR, "Invalid response format");
    return kFail;
  }
  if (!methods) return kNoError;
  for (const Json::Value &item : list) {
    PaymentMethodInfo method;
    method.country = JsonMember::text(item, "country");
    method.title = JsonMember::text(item, "title");
    method.image = JsonMember::text(item, "image");
    method.link = JsonMember::text(item, "link");
    method.getParams = JsonMember::text(item, "getParams");
    method.redirectUrl = JsonMember::text(item, "redirectUrl");
    method.method = JsonMember::text(item, "method");
    method.agreement_ids = JsonMember::text(item, "agreement_ids");
    method.region_id = JsonMember::text(item, "region_id");
    method.country_id = JsonMember::text(item, "country_id");
    method.street = JsonMember::text(item, "street");
    method.postcode = JsonMember::text(item, "postcode");
    method.city = JsonMember::text(item, "city");
    method.telephone = JsonMember::text(item, "telephone");
    if (extended) {
      method.usePaymentInformation = JsonMember::integer(item, "usePaymentInformation") != 0;
      method.link_rebill = JsonMember::text(item, "link_rebill");
    }
    methods->push_back(method);
  }
  return kNoError;
}

BookstoreApi::ApiError BookstoreApi::getLastUsedCard(std::vector<Card> &cards) {
  return getLastUsedCardImpl(cards);
}

BookstoreApi::ApiError BookstoreApi::getLastUsedCardImpl(std::vector<Card> &cards) {
  std::vector<char> response;
  const ApiError error = postWithToken("/rest/V1/device-payment/last/card", Json::Value(), &response);
  return error != kNoError ? error : readCards(response, "entity_id", "card_number", "method", &cards);
}

BookstoreApi::ApiError BookstoreApi::getHgwccCards(std::vector<Card> *cards) {
  std::vector<char> response;
  const ApiError error = postWithToken("/rest/V1/device-payment/hgwcc-get-card", Json::Value(), &response);
  return error != kNoError ? error : readCards(response, "entity_id", "card_number", "brand", cards);
}

BookstoreApi::ApiError BookstoreApi::getPayonlineCards(std::vector<Card> *cards) {
  std::vector<char> response;
  const ApiError error = postWithToken("/rest/V1/payonline/get-card", Json::Value(), &response);
  return error != kNoError ? error : readCards(response, "id", "card", nullptr, cards);
}

BookstoreApi::ApiError BookstoreApi::readCards(const std::vector<char> &response, const char *idMember,
                                               const char *numberMember, const char *methodMember,
                                               std::vector<Card> *cards) const {
  Json::Value list;
  if (!ResponseBody::parse(response, &list)) return kFail;
  if (!list.isArray()) {
    LP_LOG(LP_LOG_ERROR, "Invalid response format");
    return kFail;
  }
  for (const Json::Value &item : list) {
    cards->push_back({JsonMember::text(item, idMember), JsonMember::text(item, numberMember),
                      methodMember ? JsonMember::text(item, methodMember) : std::string()});
  }
  return kNoError;
}

BookstoreApi::ApiError BookstoreApi::removeHgwccCard(const std::string &cardId) {
  Json::Value body;
  body["card_id"] = cardId;
  std::vector<char> response;
  return postWithToken("/rest/V1/device-payment/remove-card", body, &response);
}

BookstoreApi::ApiError BookstoreApi::hgwccRebill(const std::string &quoteId, const std::string &cardId) {
  Json::Value body;
  body["quote_id"] = quoteId;
  body["card_id"] = cardId;
  std::vector<char> response;
  return postWithToken("/rest/V1/device-payment/hgwcc-rebill", body, &response);
}

BookstoreApi::ApiError BookstoreApi::removePayOnlineCard(int id) {
  Json::Value body;
  body["id"] = std::to_string(id);
  std::vector<char> response;
  return postWithToken("/rest/V1/payonline/remove-card", body, &response);
}

BookstoreApi::ApiError BookstoreApi::getPayOnlineLink(const std::string &orderId, bool rebillRemember,
                                                      const std::string &rebillCard, std::string *link) {
  Json::Value body;
  body["orderId"] = orderId;
  body["rebillRemember"] = rebillRemember;
  body["rebillCard"] = rebillCard;
  std::vector<char> response;
  const ApiError error = postWithToken("/rest/V1/payonline/get-link", body, &response);
  if (error != kNoError) return error;
  Json::Value answer;
  if (!ResponseBody::parse(response, &answer)) return kFail;
  *link = answer.isConvertibleTo(Json::stringValue) ? answer.asString() : std::string();
  return kNoError;
}

// The card calls carry the token in the body too, and are sent again, unchanged, after a refresh.
BookstoreApi::ApiError BookstoreApi::postWithToken(const char *path, Json::Value body, std::vector<char> *response) {
  const std::string token = accessTokenForRequest();
  if (token.empty()) return kNotAuthorized;
  body["access_token"] = token;
  long code = 0;
  return performRequestWithRefreshing(authorisedPost(path, token, body), &code, response);
}

BookstoreApi::ApiError BookstoreApi::PerformPayOnlineRequest(const std::string &url, std::vector<char> *response,
                                                             long *code) {
  if (PerformPayOnlineRequestInt(HttpRequest("POST", url), code, response) != 0) return kFail;
  return *code == 200 ? kNoError : kHttpError;
}

BookstoreApi::ApiError BookstoreApi::PerformPayOnlineRequest(const std::string &url, const std::string &cardHolderName,
                                                             const std::string &cardNumber,
                                                             const std::string &cardExpDate, const std::string &cardCvv,
                                                             const std::string &issuer, const std::string &email,
                                                             std::vector<char> *response, long *code) {
  // The gateway reads its fields unescaped; the escaped forms are made and dropped, as the
  // gateway's protocol has always done.
  char *escapedName = curl_escape(cardHolderName.c_str(), static_cast<int>(cardHolderName.size()));
  char *escapedEmail = curl_escape(email.c_str(), static_cast<int>(email.size()));
  const std::string form = url + "&CardHolderName=" + cardHolderName + "&CardNumber=" + cardNumber +
                           "&CardExpDate=" + cardExpDate + "&CardCvv=" + cardCvv + "&Issure=" + issuer +
                           "&Email=" + email;
  curl_free(escapedName);
  curl_free(escapedEmail);
  return PerformPayOnlineRequest(form, response, code);
}

int BookstoreApi::PerformPayOnlineRequestInt(HttpRequest request, long *code, std::vector<char> *response) {
  const std::string url = request.encoded_url();
  const std::vector<std::string> headerLines = request.GetHeaders();
  if ((QueryNetwork() & 0xf00) == 0) {
    LP_LOG(LP_LOG_WARNING, "Can't perform request without network connection");
    return -1;
  }
  CurlTransfer transfer;
  if (!transfer.handle) {
    LP_LOG(LP_LOG_ERROR, "Condition %s failed. ", "curl");
    return -1;
  }
  std::string form;
  if (!setTarget(transfer.handle, request.method(), url, &form) ||
      !setOption(transfer.handle, CURLOPT_WRITEFUNCTION, appendBody) ||
      !setOption(transfer.handle, CURLOPT_WRITEDATA, static_cast<void *>(response)) ||
      !setOption(transfer.handle, CURLOPT_NOSIGNAL, 1L)) {
    return -1;
  }
  setProxy(transfer.handle);
  for (const std::string &line : headerLines) transfer.headers = curl_slist_append(transfer.headers, line.c_str());
  if (transfer.headers && !setOption(transfer.handle, CURLOPT_HTTPHEADER, transfer.headers)) return -1;
  const CURLcode err = curl_easy_perform(transfer.handle);
  if (err != CURLE_OK) {
    LP_LOG(LP_LOG_ERROR, "Condition %s failed. curl_easy_perform failed with [%d]", "0 == err", static_cast<int>(err));
    return err;
  }
  const CURLcode info = curl_easy_getinfo(transfer.handle, CURLINFO_RESPONSE_CODE, code);
  if (info != CURLE_OK) {
    LP_LOG(LP_LOG_ERROR, "Condition %s failed. curl_easy_getinfo failed with [%d]", "0 == err", static_cast<int>(info));
    return -1;
  }
  response->push_back('\0');
  return 0;
}
