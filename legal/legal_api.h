// The legal documents service: which documents apply to the device, where a document lies,
// and the owner's consent. Requests are signed, not authorised; every call is synchronous.
#ifndef LUMENPRESS_LEGAL_API_H
#define LUMENPRESS_LEGAL_API_H

#include <json/json.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "http_request.h"

namespace lumenpress::legal {

class LegalApi {
public:
  static constexpr int kTimeoutSeconds = 30;
  static constexpr const char *kBetaFile = "/mnt/ext1/legal.beta";

  // The test endpoint while "/mnt/ext1/legal.beta" exists; "/v1" behind it with withVersion.
  static std::string legalBaseUrl(bool withVersion);
  // "bookstore|EULA" is service "bookstore", document "EULA"; a name without "|" is the device's.
  static void splitDocumentName(const std::string &fullName, std::string &serviceType, std::string &documentId);
  // "2000-01-01T00:00:00+00:00" for any time before 2000, else "%Y-%m-%d %H:%M:%S" in UTC.
  static std::string agreedDate(std::int64_t time);

  // Document name and version pairs; empty on any failure.
  std::vector<std::pair<std::string, std::string>> getDocumentList(const std::string &language);
  Json::Value getDocumentListJson(const std::string &language);
  std::string getDocumentListUrl(const std::string &language, const std::string &userId, const std::string &sessionId);
  std::string getLocalDocumentUrl(const std::string &name, const std::string &tail, bool hasAudio, bool hasWifi);
  std::string getDocumentUrl(const std::string &name, const std::string &language, const std::string &userId,
                             const std::string &sessionId);
  Json::Value getDocumentExtendedInfo(const std::string &name, const std::string &language, const std::string &userId,
                                      const std::string &sessionId);
  // 0 when the service took it, -1 otherwise.
  int sendAgreement(const std::string &name, const std::string &language, bool agree, const std::string &version,
                    const std::string &userId, const std::string &sessionId, std::int64_t time);

private:
  utilities::HttpRequest listRequest(const std::string &language);
  utilities::HttpRequest documentRequest(const std::string &name, const std::string &language,
                                         const std::string &userId, const std::string &sessionId);
  static void sign(utilities::HttpRequest *request);
  // The parsed answer of a 200, or null.
  static Json::Value perform(const utilities::HttpRequest &request);
};

}  // namespace lumenpress::legal

#endif
