#include "legal_routes.h"

#include <json/json.h>

#include "request_signature.h"
#include "unix_time.h"

namespace devstore {

namespace {

struct Document {
  const char *id;
  const char *service;
  const char *title;
  const char *version;
};

// The device's own documents in one group, the store's in another.
const Document kDocuments[] = {
    {"EULA", "e-ink", "End-user licence agreement", "1.0"},
    {"PRIVACYNOTICE", "e-ink", "Privacy notice", "1.0"},
    {"TERMSOFUSE", "bookstore", "Terms of use of the store", "1.1"},
};

const char kEndpoints[] = "(legal|legal-test)";

const Document *find(const std::string &id) {
  for (const Document &doc : kDocuments) {
    if (id == doc.id) return &doc;
  }
  return nullptr;
}

std::string origin(const httplib::Request &request) {
  return "http://" + request.get_header_value("Host");
}

}  // namespace

LegalRoutes::LegalRoutes(Database *db) : db_(db) {}

void LegalRoutes::install(httplib::Server *server) {
  const auto signedOnly = [](auto answer) {
    return [answer](const httplib::Request &request, httplib::Response &response) {
      if (!RequestSignature::valid(request)) {
        RestAnswer::error(403, "the request's signature is missing or wrong").sendTo(response);
        return;
      }
      answer(request).sendTo(response);
    };
  };
  const std::string base = std::string("/") + kEndpoints + "/v1/";
  server->Get(base + "list/e-ink/([a-z]+)",
              signedOnly([this](const httplib::Request &request) { return list(request); }));
  server->Get(base + "docs/([A-Z]+)/([a-z]+)",
              signedOnly([this](const httplib::Request &request) { return document(request); }));
  server->Get(base + "process/([A-Z]+)/([a-z]+)",
              signedOnly([this](const httplib::Request &request) { return process(request); }));
  server->Get(std::string("/") + kEndpoints + "/pages/([A-Z]+)_([a-z]+)\\.html",
              [](const httplib::Request &request, httplib::Response &response) { page(request).sendTo(response); });
}

RestAnswer LegalRoutes::list(const httplib::Request &) const {
  Json::Value groups(Json::arrayValue);
  for (const char *service : {"e-ink", "bookstore"}) {
    Json::Value group(Json::arrayValue);
    for (const Document &doc : kDocuments) {
      if (std::string(doc.service) != service) continue;
      Json::Value item;
      item["doc"] = std::string(doc.service) + "|" + doc.id;
      item["version"] = doc.version;
      group.append(item);
    }
    groups.append(group);
  }
  return RestAnswer::json(groups);
}

RestAnswer LegalRoutes::document(const httplib::Request &request) const {
  const Document *doc = find(request.matches[2]);
  if (!doc) return RestAnswer::error(404, "no such document");
  const std::string language = request.matches[3];
  Json::Value answer;
  answer["url"] = origin(request) + "/" + request.matches[1].str() + "/pages/" + doc->id + "_" + language + ".html";
  answer["title"] = doc->title;
  answer["version"] = doc->version;
  answer["service_type"] = doc->service;
  answer["language"] = language;
  return RestAnswer::json(answer);
}

RestAnswer LegalRoutes::process(const httplib::Request &request) {
  if (!find(request.matches[2])) return RestAnswer::error(404, "no such document");
  const auto param = [&](const char *key) { return request.get_param_value(key); };
  if (param("agree") != "0" && param("agree") != "1") return RestAnswer::error(400, "agree is 0 or 1");
  db_->run(
      "INSERT INTO legal_consents(endpoint, document, language, version, agree, agreed_date, service_type, user_id,"
      " session_id, device_id, received_at) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      {request.matches[1].str(), request.matches[2].str(), request.matches[3].str(), param("document_version"),
       param("agree") == "1" ? 1LL : 0LL, param("agreed_date"), param("service_type"), param("user_id"),
       param("session_id"), param("device_id"), UnixTime::now()});
  Json::Value answer;
  answer["status"] = "ok";
  return RestAnswer::json(answer);
}

RestAnswer LegalRoutes::page(const httplib::Request &request) {
  const Document *doc = find(request.matches[2]);
  if (!doc) return RestAnswer::error(404, "no such document");
  return RestAnswer::page(std::string("<!DOCTYPE html><html><head><meta charset=\"utf-8\"><title>") + doc->title +
                          "</title></head><body><h1>" + doc->title + "</h1><p>Version " + doc->version +
                          ".</p></body></html>");
}

}  // namespace devstore
