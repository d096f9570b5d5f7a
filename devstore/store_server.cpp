#include "store_server.h"

#include <filesystem>

#include "seeder.h"

namespace devstore {

namespace {

const char kFaultHeader[] = "X-Devstore-Fault";

}  // namespace

StoreServer::StoreServer(const Options &options) : options_(options), opds_(&catalogue_, &tokens_) {}

bool StoreServer::open(std::string *error) {
  std::error_code created;
  std::filesystem::create_directories(options_.data, created);
  if (created) {
    *error = "cannot create " + options_.data + ": " + created.message();
    return false;
  }
  if (!db_.open(options_.data + "/devstore.sqlite", error)) return false;
  if (!Seeder(&db_).seedIfEmpty()) {
    *error = "the catalogue could not be seeded";
    return false;
  }
  // This server reads ahead per request and would silently drop a pipelined one (Qt's image
  // loader pipelines). Closing after each answer tells such a client to send it again.
  server_.set_keep_alive_max_count(1);
  server_.set_pre_routing_handler(
      [this](const httplib::Request &req, httplib::Response &res) { return beforeRouting(req, res); });
  server_.set_post_routing_handler(
      [this](const httplib::Request &req, httplib::Response &res) { afterRouting(req, res); });
  opds_.install(&server_);
  rest_.install(&server_);
  pages_.install(&server_);
  accounts_.install(&server_);
  legal_.install(&server_);
  control_.install(&server_);
  port_ = options_.port == 0 ? server_.bind_to_any_port("127.0.0.1") : options_.port;
  if (options_.port != 0 && !server_.bind_to_port("127.0.0.1", options_.port)) port_ = -1;
  if (port_ <= 0) {
    *error = "cannot listen on 127.0.0.1:" + std::to_string(options_.port);
    return false;
  }
  return true;
}

void StoreServer::run() {
  server_.listen_after_bind();
}

void StoreServer::stop() {
  faults_.stop();
  server_.stop();
}

httplib::Server::HandlerResponse StoreServer::beforeRouting(const httplib::Request &request,
                                                            httplib::Response &response) {
  using Outcome = httplib::Server::HandlerResponse;
  if (isControl(request)) return Outcome::Unhandled;
  const auto fault = faults_.take(request.path);
  if (!fault) return Outcome::Unhandled;
  response.set_header(kFaultHeader, fault->kind);
  if (fault->kind == "delay") return faults_.delay(fault->delay_ms) ? Outcome::Unhandled : Outcome::Handled;
  if (fault->kind == "status") {
    response.status = fault->status;
    response.set_header("Connection", "close");
    if (fault->body) {
      response.set_content(*fault->body, "application/json");
    } else {
      response.set_content("injected failure\n", "text/plain");
    }
    return Outcome::Handled;
  }
  if (fault->kind == "drop") {
    dropConnection(response);
    return Outcome::Handled;
  }
  return Outcome::Unhandled;
}

void StoreServer::afterRouting(const httplib::Request &request, httplib::Response &response) {
  if (isControl(request)) return;
  log_.record(request, response);
  const std::string fault = response.get_header_value(kFaultHeader);
  if (fault == "truncate") truncateBody(response);
  if (fault == "break") breakBody(response);
}

void StoreServer::dropConnection(httplib::Response &response) {
  response.status = 200;
  response.set_chunked_content_provider("text/plain", [](size_t, httplib::DataSink &) { return false; });
}

void StoreServer::truncateBody(httplib::Response &response) {
  auto body = std::make_shared<std::string>(std::move(response.body));
  const std::string type = response.get_header_value("Content-Type");
  response.body.clear();
  response.headers.erase("Content-Type");
  response.set_header("Connection", "close");
  response.set_content_provider(body->size(), type.c_str(), [body](size_t offset, size_t, httplib::DataSink &sink) {
    if (offset == 0 && body->size() > 1) sink.write(body->data(), body->size() / 2);
    return false;
  });
}

void StoreServer::breakBody(httplib::Response &response) {
  response.body.resize(response.body.size() / 2);
  response.headers.erase("ETag");
  response.headers.erase("Content-Length");
  response.set_header("Content-Length", std::to_string(response.body.size()));
}

bool StoreServer::isControl(const httplib::Request &request) {
  return request.path.compare(0, std::strlen(ControlRoutes::kPrefix), ControlRoutes::kPrefix) == 0;
}

}  // namespace devstore
