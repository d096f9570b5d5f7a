#include "single_auth.h"

#include <json/json.h>

#include "http_request_runner.h"
#include "lp_log.h"
#include "service_address.h"

namespace lumenpress::utilities {

namespace {

constexpr int kTimeoutSeconds = 30;

// Each member an object of strings; a member of another shape is left out, not guessed at.
SingleAuth::TokenMap readTokens(const Json::Value &answer) {
  SingleAuth::TokenMap tokens;
  for (const std::string &service : answer.getMemberNames()) {
    const Json::Value &value = answer[service];
    if (!value.isObject() || !value["access_token"].isString()) continue;
    SingleAuth::Token token;
    token.access_token = value["access_token"].asString();
    token.refresh_token = value.get("refresh_token", "").isString() ? value["refresh_token"].asString() : "";
    token.login = value.get("login", "").isString() ? value["login"].asString() : "";
    token.status = value.get("status", "").isString() ? value["status"].asString() : "";
    tokens[service] = token;
  }
  return tokens;
}

}  // namespace

SingleAuth::TokenMap SingleAuth::getTokens(const std::string &access_token, const std::string &refresh_token) {
  HttpRequest request("POST", ServiceAddress::account() + "tokens");
  request.AddHeader("Content-Type", "application/json");
  Json::Value body;
  body["access_token"] = access_token;
  body["refresh_token"] = refresh_token;
  request.AddPostData(Json::FastWriter().write(body));
  long status = 0;
  std::vector<char> response;
  const int err = HttpRequestRunner().PerformRequest(request, &status, &response, kTimeoutSeconds);
  if (err != 0 || status != 200) {
    LP_LOG(LP_LOG_ERROR, "getTokens failed err = %d, code = %ld", err, status);
    return {};
  }
  Json::Value answer;
  Json::Reader reader;
  const char *begin = response.data();
  const char *end = begin + (response.empty() ? 0 : response.size() - 1);
  if (!reader.parse(begin, end, answer, false) || !answer.isObject()) {
    LP_LOG(LP_LOG_ERROR, "getTokens: the account service's answer is no JSON object");
    return {};
  }
  return readTokens(answer);
}

}  // namespace lumenpress::utilities
