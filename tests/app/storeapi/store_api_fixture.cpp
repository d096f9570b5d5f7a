#include "store_api_fixture.h"

namespace lumenpress::testing {

void StoreApiTest::SetUp() {
  ASSERT_TRUE(store_.running());
  makeApi();
}

void StoreApiTest::makeApi() {
  tokensChanged_ = 0;
  api_ = std::make_unique<BookstoreApi>([this] { ++tokensChanged_; });
  api_->setBaseUrl(store_.url("/de_de/"));
  api_->setErrorCallback([this](int err, int code) {
    std::lock_guard<std::mutex> lock(errorsMutex_);
    errors_.emplace_back(err, code);
  });
}

void StoreApiTest::signIn() {
  const BookstoreApi::LoginInfo login = api_->auth(kEmail, kPassword);
  ASSERT_EQ(login.code, 0);
  ASSERT_TRUE(api_->hasAccessToken());
  store_.clearRequests();
  tokensChanged_ = 0;
}

std::vector<Json::Value> StoreApiTest::requestsTo(const std::string &path) const {
  std::vector<Json::Value> found;
  for (const Json::Value &request : store_.requests()) {
    if (request["path"].asString() == "/de_de/" + path) found.push_back(request);
  }
  return found;
}

Json::Value StoreApiTest::lastBodyTo(const std::string &path) const {
  const auto requests = requestsTo(path);
  Json::Value body;
  if (!requests.empty()) Json::Reader().parse(requests.back()["body"].asString(), body);
  return body;
}

Json::Value StoreApiTest::json(const std::string &text) {
  Json::Value value;
  EXPECT_TRUE(Json::Reader().parse(text, value)) << text;
  return value;
}

void StoreApiTest::answer(const std::string &path, int status, const char *body, int count) const {
  Json::Value fault;
  fault["path"] = "/de_de/" + path;
  fault["status"] = status;
  fault["count"] = count;
  if (body) fault["body"] = body;
  ASSERT_TRUE(store_.addFault(fault));
}

void StoreApiTest::drop(const std::string &path) const {
  Json::Value fault;
  fault["path"] = "/de_de/" + path;
  fault["drop"] = true;
  ASSERT_TRUE(store_.addFault(fault));
}

void StoreApiTest::expireAccessToken() const {
  Json::Value body;
  body["token"] = api_->currentAccessToken();
  const HttpAnswer expired = store_.send("POST", "/_control/tokens/expire", Json::FastWriter().write(body));
  ASSERT_EQ(expired.status, 200);
  Json::Value result;
  ASSERT_TRUE(Json::Reader().parse(expired.body, result));
  ASSERT_EQ(result["expired"].asInt(), 1) << expired.body;
}

std::vector<std::pair<int, int>> StoreApiTest::errors() const {
  std::lock_guard<std::mutex> lock(errorsMutex_);
  return errors_;
}

}  // namespace lumenpress::testing
