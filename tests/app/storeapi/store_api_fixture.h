// A BookstoreApi against a devstore of the test's own, with what its callbacks heard and what
// went on the wire.
#ifndef LUMENPRESS_TESTS_STORE_API_FIXTURE_H
#define LUMENPRESS_TESTS_STORE_API_FIXTURE_H

#include <gtest/gtest.h>
#include <json/json.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "bookstore_api.h"
#include "devstore_process.h"

namespace lumenpress::testing {

class StoreApiTest : public ::testing::Test {
protected:
  static constexpr const char *kEmail = "reader@example.com";
  static constexpr const char *kPassword = "reader";

  void SetUp() override;

  // A new client, reading bookstore.cfg as the program does at start.
  void makeApi();
  // Signs the seeded customer in through `auth`, then forgets the requests that took.
  void signIn();

  // The requests that reached the store at `path` below the store, such as
  // "rest/V1/carts/mine", oldest first.
  std::vector<Json::Value> requestsTo(const std::string &path) const;
  Json::Value lastBodyTo(const std::string &path) const;
  // `text` parsed, to compare a whole request body at once.
  static Json::Value json(const std::string &text);
  // The next `count` requests to `path` answer `status`, with `body` when one is given.
  void answer(const std::string &path, int status, const char *body = nullptr, int count = 1) const;
  // The next request to `path` loses its connection.
  void drop(const std::string &path) const;
  // The store stops taking the client's access token, as when it has run out.
  void expireAccessToken() const;

  // What the error callback heard, as (err, code) pairs.
  std::vector<std::pair<int, int>> errors() const;

  DevstoreProcess store_;
  std::unique_ptr<BookstoreApi> api_;
  std::atomic<int> tokensChanged_{0};

private:
  mutable std::mutex errorsMutex_;
  std::vector<std::pair<int, int>> errors_;
};

}  // namespace lumenpress::testing

#endif
