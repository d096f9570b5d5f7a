#include "legal_documents_json.h"

#include <json/json.h>

#include <memory>

namespace lumenpress::legal {

namespace {

Json::Value docInfo(const LegalDocument &document) {
  Json::Value info(Json::objectValue);
  info["name"] = document.name;
  info["version"] = document.version;
  info["title"] = document.title;
  info["url"] = document.url;
  info["sort_order"] = Json::Int64(document.sort_order);
  Json::Value services(Json::arrayValue);
  for (const auto &service : document.services) services.append(service);
  info["services"] = services;
  return info;
}

Json::Value agreement(const LegalAgreement &agreement) {
  Json::Value value(Json::objectValue);
  value["user_id"] = agreement.user_id;
  value["session_id"] = agreement.session_id;
  value["status"] = agreement.status;
  value["sent_to_server"] = agreement.sent_to_server;
  value["time"] = Json::Int64(agreement.time);
  return value;
}

void readString(const Json::Value &object, const char *key, std::string *out) {
  if (object[key].isString()) *out = object[key].asString();
}

void readDocInfo(const Json::Value &info, LegalDocument *document) {
  if (!info.isObject()) return;
  readString(info, "name", &document->name);
  readString(info, "version", &document->version);
  readString(info, "title", &document->title);
  readString(info, "url", &document->url);
  if (info["sort_order"].isInt64()) document->sort_order = info["sort_order"].asInt64();
  if (!info["services"].isArray()) return;
  for (const Json::Value &service : info["services"]) {
    if (service.isString()) document->services.push_back(service.asString());
  }
}

void readAgreement(const Json::Value &value, LegalAgreement *agreement) {
  if (!value.isObject()) return;
  readString(value, "user_id", &agreement->user_id);
  readString(value, "session_id", &agreement->session_id);
  if (value["status"].isInt()) agreement->status = value["status"].asInt();
  if (value["sent_to_server"].isBool()) agreement->sent_to_server = value["sent_to_server"].asBool();
  if (value["time"].isInt64()) agreement->time = value["time"].asInt64();
}

}  // namespace

std::string LegalDocumentsJson::write(const LegalDocuments &documents) {
  Json::Value root(Json::arrayValue);
  for (const auto &[name, versions] : documents) {
    Json::Value entry(Json::objectValue);
    entry["name"] = name;
    Json::Value list(Json::arrayValue);
    for (const auto &[version, document] : versions) {
      Json::Value item(Json::objectValue);
      item["version"] = version;
      item["docinfo"] = docInfo(document);
      item["agreement"] = agreement(document.agreement);
      list.append(item);
    }
    entry["versions"] = list;
    root.append(entry);
  }
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "";
  return Json::writeString(builder, root);
}

void LegalDocumentsJson::read(const std::string &text, LegalDocuments *documents) {
  Json::Value root;
  Json::CharReaderBuilder builder;
  std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  std::string errors;
  if (!reader->parse(text.data(), text.data() + text.size(), &root, &errors) || !root.isArray()) return;
  for (const Json::Value &entry : root) {
    if (!entry.isObject() || !entry["name"].isString() || !entry["versions"].isArray()) continue;
    for (const Json::Value &item : entry["versions"]) {
      if (!item.isObject() || !item["version"].isString()) continue;
      LegalDocument document;
      readDocInfo(item["docinfo"], &document);
      document.name = entry["name"].asString();
      document.version = item["version"].asString();
      readAgreement(item["agreement"], &document.agreement);
      (*documents)[document.name][document.version] = document;
    }
  }
}

}  // namespace lumenpress::legal
