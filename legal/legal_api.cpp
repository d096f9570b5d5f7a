#include "legal_api.h"

#include <sys/stat.h>

#include <ctime>
#include <memory>

#include "device_path.h"
#include "http_request_runner.h"
#include "lp_log.h"
#include "panelkit.h"
#include "signature.h"

using lumenpress::utilities::HttpRequest;
using lumenpress::utilities::HttpRequestRunner;
using lumenpress::utilities::Signature;

namespace lumenpress::legal {

namespace {

const char kClientKey[] = "q7Zr2mXw9LkTfB3vH";
const char kDeviceType[] = "e-ink";
// The last moment before 2000: earlier times, 0 among them, go out as the start of 2000.
constexpr std::int64_t kLastBefore2000 = 946684799;

}  // namespace

std::string LegalApi::legalBaseUrl(bool withVersion) {
  struct stat info {};
  const bool beta = ::stat(platform::MapDevicePath(kBetaFile).c_str(), &info) == 0;
  return std::string(beta ? LP_LEGAL_TEST_SERVICE_URL : LP_LEGAL_SERVICE_URL) + (withVersion ? "/v1" : "");
}

void LegalApi::splitDocumentName(const std::string &fullName, std::string &serviceType, std::string &documentId) {
  const size_t bar = fullName.find('|');
  if (bar == std::string::npos) {
    serviceType = kDeviceType;
    documentId = fullName;
    return;
  }
  serviceType = fullName.substr(0, bar);
  documentId = fullName.substr(bar + 1);
}

std::string LegalApi::agreedDate(std::int64_t time) {
  if (time <= kLastBefore2000) return "2000-01-01T00:00:00+00:00";
  const std::time_t seconds = static_cast<std::time_t>(time);
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char buffer[128];
  std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M:%S", &utc);
  return buffer;
}

// The signature covers the request as built so far, so it is the last parameter.
void LegalApi::sign(HttpRequest *request) {
  const std::string nonce = Signature::GenerateNonce();
  request->AddGetParam("nonce", nonce);
  request->AddGetParam("client_signature", Signature::CreateSignature(*request, nonce, kClientKey));
}

Json::Value LegalApi::perform(const HttpRequest &request) {
  HttpRequestRunner runner;
  long status = 0;
  std::vector<char> response;
  if (runner.PerformRequest(request, &status, &response, kTimeoutSeconds) != 0 || status != 200) return {};
  Json::Value root;
  Json::CharReaderBuilder builder;
  std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  std::string errors;
  response.push_back('\0');
  if (!reader->parse(response.data(), response.data() + response.size() - 1, &root, &errors)) return {};
  return root;
}

HttpRequest LegalApi::listRequest(const std::string &language) {
  HttpRequest request("GET", legalBaseUrl(true) + "/list/e-ink/" + language);
  request.AddHeader("Accept", "application/json");
  request.AddGetParam("device_id", GetSerialNumber());
  request.AddGetParam("fw_version", GetSoftwareVersion());
  sign(&request);
  return request;
}

std::vector<std::pair<std::string, std::string>> LegalApi::getDocumentList(const std::string &language) {
  std::vector<std::pair<std::string, std::string>> documents;
  const Json::Value root = perform(listRequest(language));
  if (!root.isArray()) return documents;
  for (const Json::Value &group : root) {
    if (!group.isArray()) continue;
    for (const Json::Value &item : group) {
      if (item.isObject() && item["doc"].isString() && item["version"].isString())
        documents.emplace_back(item["doc"].asString(), item["version"].asString());
    }
  }
  return documents;
}

Json::Value LegalApi::getDocumentListJson(const std::string &language) {
  return perform(listRequest(language));
}

std::string LegalApi::getDocumentListUrl(const std::string &language, const std::string &userId,
                                         const std::string &sessionId) {
  HttpRequest request("GET", legalBaseUrl(true) + "/list/e-ink/" + language);
  request.AddGetParam("device_id", GetSerialNumber());
  request.AddGetParam("fw_version", GetSoftwareVersion());
  request.AddGetParam("user_id", userId);
  request.AddGetParam("session_id", sessionId);
  return request.encoded_url();
}

std::string LegalApi::getLocalDocumentUrl(const std::string &name, const std::string &tail, bool hasAudio,
                                          bool hasWifi) {
  std::string service;
  std::string document;
  splitDocumentName(name, service, document);
  std::string url = legalBaseUrl(false) + "/" + service + "/" + document + tail;
  if (name == "e-ink|EULA" && !hasAudio) {
    url += "/no-a";
  } else if (name == "e-ink|EULA" && !hasWifi) {
    url += "/no-w";
  }
  return url;
}

HttpRequest LegalApi::documentRequest(const std::string &name, const std::string &language, const std::string &userId,
                                      const std::string &sessionId) {
  std::string service;
  std::string document;
  splitDocumentName(name, service, document);
  HttpRequest request("GET", legalBaseUrl(true) + "/docs/" + document + "/" + language);
  request.AddGetParam("device_type", kDeviceType);
  request.AddGetParam("service_type", service);
  request.AddGetParam("user_id", userId);
  request.AddGetParam("session_id", sessionId);
  request.AddGetParam("device_id", GetSerialNumber());
  request.AddGetParam("fw_version", GetSoftwareVersion());
  sign(&request);
  return request;
}

std::string LegalApi::getDocumentUrl(const std::string &name, const std::string &language, const std::string &userId,
                                     const std::string &sessionId) {
  const HttpRequest request = documentRequest(name, language, userId, sessionId);
  LP_LOG(LP_LOG_INFO, "Request url: [%s]", request.encoded_url().c_str());
  const Json::Value answer = perform(request);
  return answer.isObject() && answer["url"].isString() ? answer["url"].asString() : std::string();
}

Json::Value LegalApi::getDocumentExtendedInfo(const std::string &name, const std::string &language,
                                              const std::string &userId, const std::string &sessionId) {
  const HttpRequest request = documentRequest(name, language, userId, sessionId);
  LP_LOG(LP_LOG_INFO, "Request url: [%s]", request.encoded_url().c_str());
  return perform(request);
}

int LegalApi::sendAgreement(const std::string &name, const std::string &language, bool agree,
                            const std::string &version, const std::string &userId, const std::string &sessionId,
                            std::int64_t time) {
  std::string service;
  std::string document;
  splitDocumentName(name, service, document);
  HttpRequest request("GET", legalBaseUrl(true) + "/process/" + document + "/" + language);
  request.AddGetParam("agree", agree ? "1" : "0");
  request.AddGetParam("agreed_date", agreedDate(time));
  request.AddGetParam("document_version", version);
  request.AddGetParam("device_type", kDeviceType);
  request.AddGetParam("service_type", service);
  request.AddGetParam("user_id", userId);
  request.AddGetParam("session_id", sessionId);
  request.AddGetParam("device_id", GetSerialNumber());
  sign(&request);
  HttpRequestRunner runner;
  long status = 0;
  std::vector<char> response;
  return runner.PerformRequest(request, &status, &response, kTimeoutSeconds) == 0 && status == 200 ? 0 : -1;
}

}  // namespace lumenpress::legal
