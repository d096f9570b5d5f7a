// devstore as a client sees it: its seeded catalogue, its bearer-protected feeds and files,
// suggestions, and a restart. Its paging, faults and request log are used, and so tested, by
// every test against it.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <pugixml.hpp>

#include <set>

#include "devstore_process.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::HttpAnswer;

namespace {

class StorefrontTest : public ::testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(store_.running()); }

  // The feed at a path below the OPDS folder of de_de, parsed; fails the test unless 200.
  pugi::xml_document feed(const std::string &path, const std::string &store = "de_de") {
    const HttpAnswer answer = store_.get(store_.opds(store) + path);
    EXPECT_EQ(answer.status, 200) << path << ": " << answer.body;
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(answer.body.c_str())) << path;
    return document;
  }

  static int total(const pugi::xml_document &document) {
    return document.child("feed").child("opensearch:totalResults").text().as_int();
  }

  DevstoreProcess store_;
};

TEST_F(StorefrontTest, EachStoreHasItsOwnPricesAndCurrencyButTheSameFreeBooks) {
  std::set<std::string> prices;
  for (const char *store : {"de_de", "en_us", "uk_ua"}) {
    const auto item = feed("item?id=2", store);
    const auto price = item.select_node("//link[@rel='http://opds-spec.org/acquisition/buy']/opds:price").node();
    ASSERT_TRUE(price) << store;
    prices.insert(std::string(price.attribute("currencycode").value()) + " " + price.child_value());
  }
  EXPECT_EQ(prices.size(), 3u);
  EXPECT_EQ(prices.count("EUR " + prices.begin()->substr(4)), 1u);
  EXPECT_EQ(total(feed("list?name=free")), total(feed("list?name=free", "en_us"))) << "a free book is free everywhere";
}

TEST_F(StorefrontTest, SignedInFeedsAndFilesNeedABearerToken) {
  EXPECT_EQ(store_.get(store_.opds() + "wishlist", {"Authorization: Bearer nonsense"}).status, 401);
  const std::string token = store_.accessToken();
  ASSERT_FALSE(token.empty());
  const std::vector<std::string> auth = {"Authorization: Bearer " + token};

  const HttpAnswer purchased = store_.get(store_.opds() + "purchased", auth);
  ASSERT_EQ(purchased.status, 200);
  pugi::xml_document owned;
  owned.load_string(purchased.body.c_str());
  EXPECT_EQ(store_.get(store_.opds() + "wishlist", auth).status, 200);

  // A paid book: refused without a token, and to a customer who has not bought it.
  EXPECT_EQ(store_.get("/de_de/lpress/download?id=2").status, 401);
  EXPECT_EQ(store_.get("/de_de/lpress/download?id=2", auth).status, 403);

  const auto token_link =
      owned.select_node("//link[@type='application/vnd.adobe.adept+xml']").node().attribute("href").value();
  const HttpAnswer acsm = store_.get(store_.opds() + token_link, auth);
  ASSERT_EQ(acsm.status, 200) << token_link;
  pugi::xml_document fulfilment;
  ASSERT_TRUE(fulfilment.load_string(acsm.body.c_str()));
  const std::string source = fulfilment.child("fulfillmentToken").child_value("src");
  const HttpAnswer book = store_.get(source);
  EXPECT_EQ(book.status, 200) << source;
  EXPECT_EQ(book.body.substr(0, 2), "PK");

  store_.send("POST", "/_control/tokens/expire", "{\"token\":\"" + token + "\"}");
  EXPECT_EQ(store_.get(store_.opds() + "purchased", auth).status, 401);
}

TEST_F(StorefrontTest, FreeBooksAndSamplesNeedNoSignIn) {
  const auto free = feed("list?name=free");
  const std::string href =
      free.select_node("//link[@rel='http://opds-spec.org/acquisition/open-access']").node().attribute("href").value();
  const HttpAnswer book = store_.get(store_.opds() + href);
  ASSERT_EQ(book.status, 200) << href;
  EXPECT_EQ(book.body.substr(0, 2), "PK");

  const auto paid = feed("item?id=2");
  const std::string sample =
      paid.select_node("//link[@rel='http://opds-spec.org/acquisition/sample']").node().attribute("href").value();
  EXPECT_EQ(store_.get(store_.opds() + sample).status, 200);
}

TEST_F(StorefrontTest, BadRequestsGetClearAnswers) {
  EXPECT_EQ(store_.get(store_.opds() + "genre?id=fiction&page=abc").status, 400);
  EXPECT_EQ(store_.get(store_.opds() + "genre?id=fiction&sort=sideways").status, 400);
  EXPECT_EQ(store_.get(store_.opds() + "genre?id=fiction&page=99").status, 200) << "past the end is only empty";
  EXPECT_EQ(store_.get(store_.opds() + "genre?id=no-such-genre").status, 404);
  EXPECT_EQ(store_.get(store_.opds() + "item?id=999999").status, 404);
  EXPECT_EQ(store_.get(store_.opds() + "item?id=abc").status, 404);
  EXPECT_EQ(store_.get(store_.opds() + "nothing").status, 404);
  EXPECT_EQ(store_.get("/xx_xx/lpress/opds/home").status, 404);
  EXPECT_EQ(store_.get("/covers/999999.jpg").status, 404);
  EXPECT_EQ(store_.send("POST", "/_control/faults", "{\"path\":\"/x\"}").status, 400);
  EXPECT_EQ(store_.send("POST", "/_control/faults", "not json").status, 400);
}

TEST_F(StorefrontTest, SuggestionsOfferTermsAndBooksWithTheirFeeds) {
  const HttpAnswer answer = store_.send("POST", "/de_de/lpress/opds/suggest/?q=Sil", "");
  ASSERT_EQ(answer.status, 200);
  Json::Value list;
  ASSERT_TRUE(Json::Reader().parse(answer.body, list));
  ASSERT_TRUE(list.isArray());
  std::set<std::string> types;
  for (const auto &item : list) {
    types.insert(item["type"].asString());
    if (item["type"] == "term") {
      EXPECT_NE(item["title"].asString().find("Sil"), std::string::npos);
    }
    if (item["type"] != "product") continue;
    EXPECT_EQ(store_.get(item["urlOpds"].asString()).status, 200);
    EXPECT_EQ(store_.get(item["image"].asString()).status, 200);
  }
  EXPECT_EQ(types, (std::set<std::string>{"term", "product"}));
  EXPECT_EQ(store_.get("/de_de/lpress/opds/suggest/?q=").body, "[]");
}

// Two requests sent at once on one connection, as a pipelining client does; what comes back
// until the server closes it.
std::string pipelinedAnswers(int port, const std::string &first, const std::string &second) {
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
    close(fd);
    return {};
  }
  const std::string requests =
      "GET " + first + " HTTP/1.1\r\nHost: devstore\r\n\r\nGET " + second + " HTTP/1.1\r\nHost: devstore\r\n\r\n";
  std::string answers;
  if (write(fd, requests.data(), requests.size()) == static_cast<ssize_t>(requests.size())) {
    char buffer[65536];
    for (ssize_t got; (got = read(fd, buffer, sizeof buffer)) > 0;) answers.append(buffer, static_cast<size_t>(got));
  }
  close(fd);
  return answers;
}

// A pipelined request must be answered or its connection closed at once, so that the client
// sends it again; one that is read and dropped leaves the client waiting for an answer that
// never comes, and Qt's image loader then hands an image the wrong picture.
TEST_F(StorefrontTest, APipelinedRequestIsNeverDroppedUnanswered) {
  const std::string answers = pipelinedAnswers(store_.port(), "/covers/1.jpg", "/covers/2.jpg");
  ASSERT_NE(answers.find("HTTP/1.1 200"), std::string::npos);
  const bool bothAnswered = answers.find("HTTP/1.1 200", answers.find("HTTP/1.1 200") + 1) != std::string::npos;
  EXPECT_TRUE(bothAnswered || answers.find("Connection: close") != std::string::npos);
}

TEST(StorefrontRestart, KeepsItsDataAndTokens) {
  const std::string data = std::string(std::getenv("LUMENPRESS_DEVICE_ROOT")) + "/kept";
  std::string token;
  {
    DevstoreProcess first(data);
    ASSERT_TRUE(first.running());
    token = first.accessToken();
  }
  DevstoreProcess second(data);
  ASSERT_TRUE(second.running());
  EXPECT_EQ(second.get(second.opds() + "purchased", {"Authorization: Bearer " + token}).status, 200);
  EXPECT_EQ(second.get("/covers/1.jpg").status, 200);
}

}  // namespace
