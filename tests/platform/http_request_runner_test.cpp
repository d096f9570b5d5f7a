#include <curl/curl.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "http_request.h"
#include "http_request_runner.h"
#include "panelkit.h"

using lumenpress::utilities::HttpRequest;
using lumenpress::utilities::HttpRequestRunner;

namespace {

std::string describe(const httplib::Request &req) {
  std::string text = req.method + " " + req.path + "\n";
  for (const auto &[key, value] : req.params) text += "param " + key + "=" + value + "\n";
  for (const char *name : {"Authorization", "Content-Type", "Content-Length"}) {
    if (req.has_header(name)) text += std::string(name) + " " + req.get_header_value(name) + "\n";
  }
  return text + "body " + req.body;
}

// Runs a server on a free port of host until it goes out of scope; port() is 0 if none could be bound.
class ServerThread {
public:
  ServerThread(httplib::Server &server, const char *host) : server_(server) {
    port_ = std::max(server.bind_to_any_port(host), 0);
    if (port_ == 0) return;
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    // A stop() that comes before the accept loop has started is lost, and join() would never return.
    while (!server_.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ~ServerThread() {
    if (!thread_.joinable()) return;
    server_.stop();
    thread_.join();
  }
  int port() const { return port_; }

private:
  httplib::Server &server_;
  int port_ = 0;
  std::thread thread_;
};

// A local server on a free port, answering until the fixture ends.
class HttpRunnerTest : public ::testing::Test {
protected:
  void SetUp() override {
    server_.Get("/status/(\\d+)", [](const httplib::Request &req, httplib::Response &res) {
      res.status = std::stoi(req.matches[1]);
      res.set_content("status " + std::string(req.matches[1]), "text/plain");
    });
    server_.Get("/slow", [](const httplib::Request &, httplib::Response &res) {
      std::this_thread::sleep_for(std::chrono::seconds(3));
      res.set_content("late", "text/plain");
    });
    server_.Get("/binary", [](const httplib::Request &, httplib::Response &res) {
      std::string bytes;
      for (int i = 0; i < 512; ++i) bytes += static_cast<char>(i % 256);
      res.set_content(bytes, "application/octet-stream");
    });
    server_.Get("/redirect", [](const httplib::Request &, httplib::Response &res) { res.set_redirect("/status/200"); });
    const auto echo = [](const httplib::Request &req, httplib::Response &res) {
      res.set_content(describe(req), "text/plain");
    };
    // A proxied request names the whole URL in its request line.
    for (const char *path : {"/echo", "http://store\\.invalid/.*"}) {
      server_.Get(path, echo);
      server_.Post(path, echo);
      server_.Put(path, echo);
      server_.Delete(path, echo);
    }
    running_ = std::make_unique<ServerThread>(server_, "127.0.0.1");
    port_ = running_->port();
    ASSERT_GT(port_, 0);
  }

  std::string url(const std::string &path, const std::string &host = "127.0.0.1") const {
    return "http://" + host + ":" + std::to_string(port_) + path;
  }

  static int perform(const HttpRequest &request, long *code, std::vector<char> *body, int timeout = 10) {
    return HttpRequestRunner().PerformRequest(request, code, body, timeout);
  }

  // The text of an exchange that must have succeeded.
  static std::string fetch(const HttpRequest &request, long expectedStatus = 200) {
    long code = 0;
    std::vector<char> body;
    EXPECT_EQ(perform(request, &code, &body), 0) << request.encoded_url();
    EXPECT_EQ(code, expectedStatus);
    return body.empty() ? std::string() : std::string(body.data());
  }

  httplib::Server server_;
  std::unique_ptr<ServerThread> running_;
  int port_ = 0;
};

int unusedPort() {
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address);
  socklen_t length = sizeof address;
  getsockname(fd, reinterpret_cast<sockaddr *>(&address), &length);
  close(fd);  // bound but never listening: connections are refused
  return ntohs(address.sin_port);
}

// A failed exchange gives its curl code, no status and no body, not even the one the vector held before.
void expectTransportFailure(const HttpRequest &request, int timeout, int expected) {
  long code = 99;
  std::vector<char> body{'o', 'l', 'd'};
  EXPECT_EQ(HttpRequestRunner().PerformRequest(request, &code, &body, timeout), expected) << request.encoded_url();
  EXPECT_EQ(code, 0);
  EXPECT_TRUE(body.empty());
}

std::string deviceRootFile(const std::string &name) {
  return std::string(std::getenv("LUMENPRESS_DEVICE_ROOT")) + "/" + name;
}

std::string readFile(const std::string &path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace

TEST(HttpRequestText, QueryIsEncodedAfterAnyExistingQueryAndBeforeTheFragment) {
  HttpRequest plain("GET", "http://h/p");
  plain.AddGetParam("k", "a b&c=d/e+f~-._é");
  plain.AddGetParam("n", "");
  EXPECT_EQ(plain.encoded_url(), "http://h/p?k=a%20b%26c%3Dd%2Fe%2Bf~-._%C3%A9&n=");

  HttpRequest withQuery("GET", "http://h/p?x=1#top");
  withQuery.AddGetParam("y", "2");
  EXPECT_EQ(withQuery.encoded_url(), "http://h/p?x=1&y=2#top");

  HttpRequest openQuery("GET", "http://h/p?");
  openQuery.AddGetParam("y", "2");
  EXPECT_EQ(openQuery.encoded_url(), "http://h/p?y=2");
  EXPECT_EQ(HttpRequest("GET", "http://h/p?x=1").encoded_url(), "http://h/p?x=1");
}

TEST(HttpRequestText, HeadersAreReadyLinesAndLineBreaksAreRefused) {
  HttpRequest request("POST", "http://h/");
  request.AddHeader("Content-Type", "application/json");
  request.AddHeader("X-Bad", "a\r\nInjected: 1");
  request.AddHeader("Authorization", "Bearer abc");
  EXPECT_EQ(request.GetHeaders(),
            (std::vector<std::string>{"Content-Type: application/json", "Authorization: Bearer abc"}));
}

TEST_F(HttpRunnerTest, AnyStatusIsAnExchangeWithItsWholeBodyAndOneZeroByte) {
  for (int status : {200, 401, 500}) {
    long code = 0;
    std::vector<char> body{'o', 'l', 'd'};
    EXPECT_EQ(perform(HttpRequest("GET", url("/status/" + std::to_string(status))), &code, &body), 0);
    EXPECT_EQ(code, status);
    const std::string expected = "status " + std::to_string(status);
    ASSERT_EQ(body.size(), expected.size() + 1);
    EXPECT_EQ(body.back(), '\0');
    EXPECT_EQ(std::string(body.data()), expected);
  }
  const std::string redirect = fetch(HttpRequest("GET", url("/redirect")), 302);
  EXPECT_EQ(redirect.find("status 200"), std::string::npos);

  long code = 0;
  std::vector<char> body;
  EXPECT_EQ(perform(HttpRequest("GET", url("/binary")), &code, &body), 0);
  ASSERT_EQ(body.size(), 513u) << "a binary body arrives whole";
  for (int i = 0; i < 512; ++i) ASSERT_EQ(static_cast<unsigned char>(body[i]), i % 256) << i;
}

TEST_F(HttpRunnerTest, TransportFailuresAreNonZeroWithNothingThatLooksLikeABody) {
  expectTransportFailure(HttpRequest("GET", url("/slow")), 1, CURLE_OPERATION_TIMEDOUT);
  const std::string address = "127.0.0.1:" + std::to_string(unusedPort());
  HttpRequest refused("GET", "http://user:secret-pass@" + address + "/books");
  refused.AddGetParam("token", "secret-query");
  refused.AddHeader("Authorization", "Bearer secret-token");
  expectTransportFailure(refused, 10, CURLE_COULDNT_CONNECT);
  // Refused before any connection, which would fail otherwise.
  for (const std::string &other :
       {std::string("file:///etc/hosts"), std::string("FILE:///etc/hosts"), "gopher://" + address + "/_raw",
        "dict://" + address + "/d", "ftp://" + address + "/f"}) {
    expectTransportFailure(HttpRequest("GET", other), 10, CURLE_UNSUPPORTED_PROTOCOL);
  }

  const std::string log = readFile(deviceRootFile("host/kiosk-2.log"));
  EXPECT_NE(log.find("<1>"), std::string::npos) << log;
  EXPECT_NE(log.find("GET http://" + address + "/books failed"), std::string::npos) << log;
  EXPECT_EQ(log.find("secret"), std::string::npos) << log;
}

TEST_F(HttpRunnerTest, EveryMethodSendsItsQueryHeadersAndBody) {
  HttpRequest request("POST", url("/echo?fixed=1"));
  request.AddGetParam("q", "a b&c=d/e+f é");
  request.AddHeader("Content-Type", "application/json");
  request.AddHeader("Authorization", "Bearer abc");
  request.AddPostData("{\"a\":");
  request.AddPostData("1}");
  EXPECT_EQ(fetch(request),
            "POST /echo\nparam fixed=1\nparam q=a b&c=d/e+f é\nAuthorization Bearer abc\n"
            "Content-Type application/json\nContent-Length 7\nbody {\"a\":1}");
  EXPECT_EQ(fetch(HttpRequest("DELETE", url("/echo"))), "DELETE /echo\nbody ");
  for (const char *method : {"POST", "PUT"}) {
    const std::string empty = fetch(HttpRequest(method, url("/echo")));
    EXPECT_EQ(empty.substr(0, empty.find('\n')), std::string(method) + " /echo");
    EXPECT_NE(empty.find("Content-Length 0\n"), std::string::npos) << empty;
  }
  for (const char *method : {"PUT", "DELETE"}) {
    HttpRequest request(method, url("/echo"));
    request.AddHeader("Content-Type", "text/plain");
    request.AddPostData("x=1");
    EXPECT_EQ(fetch(request), std::string(method) + " /echo\nContent-Type text/plain\nContent-Length 3\nbody x=1");
  }
}

TEST_F(HttpRunnerTest, ProxyFromTheEnvironmentServesAllButLoopback) {
  setenv("http_proxy", url("").c_str(), 1);
  EXPECT_EQ(fetch(HttpRequest("GET", "http://store.invalid/books")), "GET http://store.invalid/books\nbody ");

  setenv("http_proxy", ("http://127.0.0.1:" + std::to_string(unusedPort())).c_str(), 1);
  setenv("no_proxy", "example.org", 1);
  EXPECT_EQ(fetch(HttpRequest("GET", url("/echo"))), "GET /echo\nbody ");
  EXPECT_EQ(fetch(HttpRequest("GET", url("/echo", "localhost"))), "GET /echo\nbody ");

  for (const char *host : {"127.0.0.2", "::1"}) {
    httplib::Server other;
    other.Get("/", [](const httplib::Request &, httplib::Response &res) { res.set_content("direct", "text/plain"); });
    const ServerThread running(other, host);
    if (running.port() == 0) continue;  // no IPv6 on this machine
    const std::string name = std::string(host) == "::1" ? "[::1]" : host;
    EXPECT_EQ(fetch(HttpRequest("GET", "http://" + name + ":" + std::to_string(running.port()) + "/")), "direct");
  }
}

TEST(ProxySetting, ComesFromTheEnvironmentHttpsFirst) {
  const auto proxy = [] {
    char *text = get_proxy();
    const std::string copy = text ? text : "<null>";
    clean_proxy_object(text);
    return copy;
  };
  for (const char *name : {"https_proxy", "HTTPS_PROXY", "http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"}) {
    unsetenv(name);
  }
  EXPECT_EQ(proxy(), "<null>");
  setenv("all_proxy", "socks5://all:1080", 1);
  setenv("http_proxy", "http://plain:3128", 1);
  setenv("https_proxy", "", 1);
  EXPECT_EQ(proxy(), "http://plain:3128");
  setenv("HTTPS_PROXY", "http://secure:3128", 1);
  EXPECT_EQ(proxy(), "http://secure:3128");
}

TEST_F(HttpRunnerTest, ManyThreadsEachWithTheirOwnRunner) {
  std::atomic<int> good{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 10; ++i) {
        long code = 0;
        std::vector<char> body;
        if (perform(HttpRequest("GET", url("/status/200")), &code, &body) == 0 && code == 200) ++good;
      }
    });
  }
  for (auto &thread : threads) thread.join();
  EXPECT_EQ(good, 80);
}

TEST(HttpRunnerTls, UntrustedCertificateIsRefused) {
  if (system("command -v openssl >/dev/null") != 0) GTEST_SKIP() << "no openssl to make a certificate";
  const std::string cert = deviceRootFile("cert.pem"), key = deviceRootFile("key.pem");
  const std::string make =
      "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 1 "
      "-subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 -keyout " +
      key + " -out " + cert + " >/dev/null 2>&1";
  ASSERT_EQ(system(make.c_str()), 0);
  httplib::SSLServer server(cert.c_str(), key.c_str());
  ASSERT_TRUE(server.is_valid());
  server.Get("/", [](const httplib::Request &, httplib::Response &res) { res.set_content("secret", "text/plain"); });
  const ServerThread running(server, "127.0.0.1");
  ASSERT_GT(running.port(), 0);

  expectTransportFailure(HttpRequest("GET", "https://127.0.0.1:" + std::to_string(running.port()) + "/"), 10,
                         CURLE_PEER_FAILED_VERIFICATION);
}
