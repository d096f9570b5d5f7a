#include <gtest/gtest.h>
#include <curl/curl.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "http_request.h"
#include "http_request_runner.h"
#include "panelkit.h"

using lumenpress::utilities::HttpRequest;
using lumenpress::utilities::HttpRequestRunner;

namespace {

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
      std::string text = req.method + "\n";
      for (const auto &[key, value] : req.params) text += "param " + key + "=" + value + "\n";
      text += "auth " + req.get_header_value("Authorization") + "\n";
      text += "type " + req.get_header_value("Content-Type") + "\n";
      text += "body " + req.body;
      res.set_content(text, "text/plain");
    };
    server_.Get("/echo", echo);
    server_.Post("/echo", echo);
    server_.Put("/echo", echo);
    server_.Delete("/echo", echo);
    port_ = server_.bind_to_any_port("127.0.0.1");
    ASSERT_GT(port_, 0);
    thread_ = std::thread([this] { server_.listen_after_bind(); });
  }

  void TearDown() override {
    server_.stop();
    thread_.join();
  }

  std::string url(const std::string &path) const { return "http://127.0.0.1:" + std::to_string(port_) + path; }

  int perform(const HttpRequest &request, long *code, std::vector<char> *body, int timeout = 10) {
    return HttpRequestRunner().PerformRequest(request, code, body, timeout);
  }

  static std::string text(const std::vector<char> &body) { return std::string(body.data()); }

  httplib::Server server_;
  int port_ = 0;
  std::thread thread_;
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

}  // namespace

TEST_F(HttpRunnerTest, AnyStatusIsAnExchangeWithItsBodyAndOneZeroByte) {
  for (int status : {200, 401, 500}) {
    long code = 0;
    std::vector<char> body;
    EXPECT_EQ(perform(HttpRequest("GET", url("/status/" + std::to_string(status))), &code, &body), 0);
    EXPECT_EQ(code, status);
    const std::string expected = "status " + std::to_string(status);
    ASSERT_EQ(body.size(), expected.size() + 1);
    EXPECT_EQ(body.back(), '\0');
    EXPECT_EQ(text(body), expected);
  }
}

TEST_F(HttpRunnerTest, RedirectIsNotFollowed) {
  long code = 0;
  std::vector<char> body;
  EXPECT_EQ(perform(HttpRequest("GET", url("/redirect")), &code, &body), 0);
  EXPECT_EQ(code, 302);
}

TEST_F(HttpRunnerTest, BinaryBodyArrivesWhole) {
  long code = 0;
  std::vector<char> body;
  EXPECT_EQ(perform(HttpRequest("GET", url("/binary")), &code, &body), 0);
  ASSERT_EQ(body.size(), 513u);
  for (int i = 0; i < 512; ++i) ASSERT_EQ(static_cast<unsigned char>(body[i]), i % 256) << i;
  EXPECT_EQ(body[512], '\0');
}

TEST_F(HttpRunnerTest, TransportFailuresAreNonZeroWithNothingThatLooksLikeABody) {
  long code = 99;
  std::vector<char> body{'o', 'l', 'd'};
  EXPECT_NE(perform(HttpRequest("GET", url("/slow")), &code, &body, 1), 0);
  EXPECT_EQ(code, 0);
  EXPECT_TRUE(body.empty());

  code = 99;
  body = {'o', 'l', 'd'};
  const std::string refused = "http://127.0.0.1:" + std::to_string(unusedPort()) + "/";
  EXPECT_NE(perform(HttpRequest("GET", refused), &code, &body), 0);
  EXPECT_EQ(code, 0);
  EXPECT_TRUE(body.empty());
}

TEST_F(HttpRunnerTest, QueryHeadersAndBodyReachTheServer) {
  HttpRequest request("POST", url("/echo?fixed=1"));
  request.AddGetParam("q", "a b&c=d/é");
  request.AddGetParam("number", "LP740");
  request.AddHeader("Content-Type", "application/json");
  request.AddHeader("Authorization", "Bearer abc");
  request.AddPostData("{\"a\":");
  request.AddPostData("1}");
  EXPECT_EQ(request.encoded_url(), url("/echo?fixed=1&q=a%20b%26c%3Dd%2F%C3%A9&number=LP740"));
  EXPECT_EQ(request.GetHeaders(),
            (std::vector<std::string>{"Content-Type: application/json", "Authorization: Bearer abc"}));

  long code = 0;
  std::vector<char> body;
  ASSERT_EQ(perform(request, &code, &body), 0);
  EXPECT_EQ(code, 200);
  EXPECT_EQ(text(body),
            "POST\nparam fixed=1\nparam number=LP740\nparam q=a b&c=d/é\nauth Bearer abc\n"
            "type application/json\nbody {\"a\":1}");
}

TEST_F(HttpRunnerTest, OtherMethodsKeepTheirNameAndBody) {
  for (const char *method : {"PUT", "DELETE"}) {
    HttpRequest request(method, url("/echo"));
    request.AddPostData("x=1");
    long code = 0;
    std::vector<char> body;
    ASSERT_EQ(perform(request, &code, &body), 0);
    EXPECT_EQ(text(body).substr(0, text(body).find('\n')), method);
    EXPECT_NE(text(body).find("body x=1"), std::string::npos);
  }
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

TEST_F(HttpRunnerTest, LoopbackBypassesAConfiguredProxy) {
  setenv("http_proxy", "http://127.0.0.1:1", 1);
  long code = 0;
  std::vector<char> body;
  EXPECT_EQ(perform(HttpRequest("GET", url("/status/200")), &code, &body), 0);
  EXPECT_EQ(code, 200);

  char *proxy = get_proxy();
  ASSERT_NE(proxy, nullptr);
  EXPECT_STREQ(proxy, "http://127.0.0.1:1");
  clean_proxy_object(proxy);
  unsetenv("http_proxy");
  EXPECT_EQ(get_proxy(), nullptr);
}

TEST(HttpRunnerTls, UntrustedCertificateIsRefused) {
  if (system("command -v openssl >/dev/null") != 0) GTEST_SKIP() << "no openssl to make a certificate";
  const std::string dir = std::getenv("LUMENPRESS_DEVICE_ROOT");
  const std::string cert = dir + "/cert.pem", key = dir + "/key.pem";
  const std::string make = "openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=127.0.0.1 -keyout " + key +
                           " -out " + cert + " >/dev/null 2>&1";
  ASSERT_EQ(system(make.c_str()), 0);
  httplib::SSLServer server(cert.c_str(), key.c_str());
  ASSERT_TRUE(server.is_valid());
  server.Get("/", [](const httplib::Request &, httplib::Response &res) { res.set_content("secret", "text/plain"); });
  const int port = server.bind_to_any_port("127.0.0.1");
  std::thread thread([&] { server.listen_after_bind(); });

  long code = 0;
  std::vector<char> body;
  const int result = HttpRequestRunner().PerformRequest(
      HttpRequest("GET", "https://127.0.0.1:" + std::to_string(port) + "/"), &code, &body, 10);
  server.stop();
  thread.join();
  EXPECT_EQ(result, CURLE_PEER_FAILED_VERIFICATION);
  EXPECT_TRUE(body.empty());
}
