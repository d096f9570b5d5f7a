#include "devstore_process.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "http_request.h"
#include "http_request_runner.h"

namespace lumenpress::testing {

namespace {

// A first start seeds the catalogue and draws its covers; sanitizer builds take a while.
constexpr int kStartTimeoutMs = 120000;

Json::Value parsed(const std::string &text) {
  Json::CharReaderBuilder builder;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value value;
  reader->parse(text.data(), text.data() + text.size(), &value, nullptr);
  return value;
}

std::string compact(const Json::Value &value) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "";
  return Json::writeString(builder, value);
}

// The port from the first line devstore prints, "devstore: listening on http://127.0.0.1:N/".
int readPort(int fd) {
  std::string line;
  pollfd waiting{fd, POLLIN, 0};
  while (line.find('\n') == std::string::npos && poll(&waiting, 1, kStartTimeoutMs) > 0) {
    char buffer[256];
    const ssize_t n = read(fd, buffer, sizeof buffer);
    if (n <= 0) break;
    line.append(buffer, static_cast<size_t>(n));
  }
  const auto colon = line.rfind(':');
  return colon == std::string::npos ? 0 : std::atoi(line.c_str() + colon + 1);
}

}  // namespace

DevstoreProcess::DevstoreProcess(const std::string &dataFolder) {
  const std::string data =
      dataFolder.empty() ? std::string(std::getenv("LUMENPRESS_DEVICE_ROOT")) + "/devstore" : dataFolder;
  int out[2];
  if (pipe(out) != 0) return;
  pid_ = fork();
  if (pid_ == 0) {
    dup2(out[1], STDOUT_FILENO);
    close(out[0]);
    close(out[1]);
    execl(LP_DEVSTORE_BINARY, LP_DEVSTORE_BINARY, "--port", "0", "--data", data.c_str(), static_cast<char *>(nullptr));
    _exit(127);
  }
  close(out[1]);
  port_ = pid_ > 0 ? readPort(out[0]) : 0;
  close(out[0]);
}

DevstoreProcess::~DevstoreProcess() {
  stop();
}

void DevstoreProcess::stop() {
  if (pid_ <= 0) return;
  kill(pid_, SIGTERM);
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  port_ = 0;
}

std::string DevstoreProcess::url(const std::string &path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

std::string DevstoreProcess::opds(const std::string &store) const {
  return url("/" + store + "/lpress/opds/");
}

HttpAnswer DevstoreProcess::get(const std::string &path, const std::vector<std::string> &headers, int timeout) const {
  return exchange("GET", path, "", headers, timeout);
}

HttpAnswer DevstoreProcess::send(const std::string &method, const std::string &path, const std::string &body,
                                 const std::vector<std::string> &headers) const {
  return exchange(method, path, body, headers, 30);
}

HttpAnswer DevstoreProcess::exchange(const std::string &method, const std::string &path, const std::string &body,
                                     const std::vector<std::string> &headers, int timeout) const {
  utilities::HttpRequest request(method, path.rfind("http", 0) == 0 ? path : url(path));
  for (const auto &header : headers) {
    const auto colon = header.find(':');
    request.AddHeader(header.substr(0, colon), header.substr(colon + 2));
  }
  request.AddPostData(body);
  HttpAnswer answer;
  std::vector<char> response;
  answer.error = utilities::HttpRequestRunner().PerformRequest(request, &answer.status, &response, timeout);
  if (!response.empty()) answer.body.assign(response.data(), response.size() - 1);
  return answer;
}

Json::Value DevstoreProcess::requests() const {
  return parsed(get("/_control/requests").body);
}

void DevstoreProcess::clearRequests() const {
  send("DELETE", "/_control/requests", "");
}

bool DevstoreProcess::addFault(const Json::Value &fault) const {
  return send("POST", "/_control/faults", compact(fault)).status == 204;
}

std::string DevstoreProcess::accessToken() const {
  return parsed(send("POST", "/_control/tokens", R"({"email":"reader@example.com"})").body)["access_token"].asString();
}

}  // namespace lumenpress::testing
