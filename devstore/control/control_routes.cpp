#include "control_routes.h"

#include "json_text.h"

namespace devstore {

namespace {

Json::Value error(const std::string &message) {
  Json::Value value(Json::objectValue);
  value["error"] = message;
  return value;
}

}  // namespace

ControlRoutes::ControlRoutes(const Database *db, RequestLog *log, FaultInjector *faults, TokenStore *tokens,
                             PaymentPages *pages)
    : db_(db), log_(log), faults_(faults), tokens_(tokens), pages_(pages) {}

void ControlRoutes::install(httplib::Server *server) {
  const std::string prefix = kPrefix;
  server->Get(prefix + "health",
              [](const httplib::Request &, httplib::Response &res) { res.set_content("ok\n", "text/plain"); });
  server->Get(prefix + "requests",
              [this](const httplib::Request &, httplib::Response &res) { sendJson(res, log_->toJson()); });
  server->Delete(prefix + "requests", [this](const httplib::Request &, httplib::Response &res) {
    log_->clear();
    res.status = 204;
  });
  server->Post(prefix + "faults", [this](const httplib::Request &req, httplib::Response &res) { addFault(req, res); });
  server->Delete(prefix + "faults", [this](const httplib::Request &, httplib::Response &res) {
    faults_->clear();
    res.status = 204;
  });
  server->Post(prefix + "tokens",
               [this](const httplib::Request &req, httplib::Response &res) { issueToken(req, res); });
  server->Post(prefix + "tokens/expire",
               [this](const httplib::Request &req, httplib::Response &res) { expireTokens(req, res); });
  server->Post(prefix + "payments",
               [this](const httplib::Request &req, httplib::Response &res) { setPaymentMode(req, res); });
}

void ControlRoutes::addFault(const httplib::Request &request, httplib::Response &response) {
  Json::Value body;
  std::string message = "the body is no JSON";
  if (!JsonText::parse(request.body, &body) || !faults_->add(body, &message)) {
    return sendJson(response, error(message), 400);
  }
  response.status = 204;
}

void ControlRoutes::issueToken(const httplib::Request &request, httplib::Response &response) {
  Json::Value body;
  if (!JsonText::parse(request.body, &body) || !body["email"].isString()) {
    return sendJson(response, error("give the customer's \"email\""), 400);
  }
  const auto rows = db_->query("SELECT id FROM customers WHERE email = ?", {body["email"].asString()});
  if (rows.empty()) return sendJson(response, error("no such customer"), 404);
  const auto pair = tokens_->issue(rows.front().integer("id"));
  if (!pair) return sendJson(response, error("no token could be stored"), 500);
  Json::Value tokens(Json::objectValue);
  tokens["access_token"] = pair->access;
  tokens["refresh_token"] = pair->refresh;
  sendJson(response, tokens);
}

void ControlRoutes::expireTokens(const httplib::Request &request, httplib::Response &response) {
  Json::Value body(Json::objectValue);
  if (!request.body.empty() && (!JsonText::parse(request.body, &body) || !body.isObject())) {
    return sendJson(response, error("the body is no JSON object"), 400);
  }
  Json::Value result(Json::objectValue);
  result["expired"] = tokens_->expire(body.get("token", "").asString());
  sendJson(response, result);
}

void ControlRoutes::setPaymentMode(const httplib::Request &request, httplib::Response &response) {
  Json::Value body;
  if (!JsonText::parse(request.body, &body) || !body.isObject() || !body["browser"].isString() ||
      !pages_->setBrowserMode(body["browser"].asString())) {
    return sendJson(response, error("give \"browser\": \"complete\", \"cancel\" or \"ask\""), 400);
  }
  response.status = 204;
}

void ControlRoutes::sendJson(httplib::Response &response, const Json::Value &value, int status) {
  response.status = status;
  response.set_content(JsonText::write(value), "application/json");
}

}  // namespace devstore
