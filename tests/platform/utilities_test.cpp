#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <set>
#include <thread>
#include <vector>

#include "device_path.h"
#include "message_queue.h"
#include "runnable.h"
#include "serialization_utils.h"
#include "url.h"
#include "user_agent_config.h"

using lumenpress::utilities::IRunnable;
using lumenpress::utilities::MessageQueue;
using lumenpress::utilities::SerializationUtils;
using lumenpress::utilities::Url;
using lumenpress::utilities::UserAgentConfig;

namespace {

std::string logText() {
  std::ifstream in(lumenpress::platform::DeviceRoot() + "/host/kiosk-2.log");
  return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace

TEST(MessageQueue, RefusesItemsUntilInitialised) {
  MessageQueue<std::shared_ptr<IRunnable>> queue;
  EXPECT_EQ(queue.Push(nullptr), -7);
  EXPECT_EQ(queue.PushFront(nullptr), -7);
  EXPECT_EQ(queue.Size(), 0u);
  const std::string log = logText();
  const std::string line = "]Condition: \"is_inited_\", return(\"LP_NOT_IMPEMENTED\")]";
  const auto first = log.find(line);
  ASSERT_NE(first, std::string::npos);
  EXPECT_NE(log.find(line, first + 1), std::string::npos);
}

TEST(MessageQueue, OrderWaitsAndShutdown) {
  MessageQueue<int> queue;
  queue.Init();
  queue.Push(2);
  queue.Push(3);
  queue.PushFront(1);
  int item = 0;
  for (int expected : {1, 2, 3}) {
    ASSERT_TRUE(queue.TryPop(&item));
    EXPECT_EQ(item, expected);
  }
  EXPECT_FALSE(queue.TryPop(&item));
  EXPECT_FALSE(queue.WaitPop(&item, 10));

  std::thread waiter([&] { EXPECT_FALSE(queue.WaitPop(&item, 60000)); });
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  queue.Deinit();
  waiter.join();
  EXPECT_EQ(queue.Push(4), -7);
}

TEST(MessageQueue, EveryItemOfManyProducersArrivesOnce) {
  MessageQueue<int> queue;
  queue.Init();
  constexpr int kProducers = 6, kItems = 2000;
  std::vector<std::thread> producers;
  for (int p = 0; p < kProducers; ++p) {
    producers.emplace_back([&queue, p] {
      for (int i = 0; i < kItems; ++i) (i % 2 ? queue.Push(p * kItems + i) : queue.PushFront(p * kItems + i));
    });
  }
  std::set<int> seen;
  int item = 0;
  while (seen.size() < kProducers * kItems && queue.WaitPop(&item, 10000)) EXPECT_TRUE(seen.insert(item).second);
  for (auto &producer : producers) producer.join();
  EXPECT_EQ(seen.size(), static_cast<size_t>(kProducers * kItems));
}

TEST(Url, SplitsIntoItsParts) {
  const Url full("  HTTPS://user:pw@Store.Example.COM:8443/de_de/lpress/opds/home?x=1&y=2#top ");
  ASSERT_TRUE(full.isValid());
  EXPECT_EQ(full.scheme(), "https");
  EXPECT_EQ(full.userInfo(), "user:pw");
  EXPECT_EQ(full.host(), "store.example.com");
  EXPECT_EQ(full.port(), 8443);
  EXPECT_EQ(full.path(), "/de_de/lpress/opds/home");
  EXPECT_EQ(full.query(), "x=1&y=2");
  EXPECT_EQ(full.fragment(), "top");

  const Url bare("http://127.0.0.1");
  EXPECT_EQ(bare.port(), 80);
  EXPECT_EQ(bare.path(), "/");
  const Url v6("https://[::1]:9000/x?q");
  EXPECT_EQ(v6.host(), "::1");
  EXPECT_EQ(v6.port(), 9000);
  EXPECT_EQ(v6.query(), "q");
  EXPECT_EQ(Url("https://a.b/p").port(), 443);
}

TEST(Url, RejectsWhatIsNoAbsoluteUrl) {
  for (const char *bad : {"", "store.example.com/de_de/", "://x", "http://", "http://host:99999/", "http://host:8a/",
                          "http://host:/", "http://[::1/", "1http://x/"})
    EXPECT_FALSE(Url(bad).isValid()) << bad;
}

TEST(Url, StoresOnOneHostShareIt) {
  EXPECT_EQ(Url("https://shop.example.com/de_de/").host(), Url("https://SHOP.example.com/en_us/").host());
  EXPECT_NE(Url("https://shop.example.com/de_de/").host(), Url("https://shop.example.org/de_de/").host());
}

TEST(UserAgentConfig, NamesDeviceAndVersionsInOneHeaderSafeLine) {
  std::ofstream(lumenpress::platform::DeviceRoot() + "/coreapp/config/device.cfg")
      << "model=Reader\\n740-2\nsoftware_version=U740.6.10.1508\n";
  const std::string agent = UserAgentConfig("5.15.8", "73.16").userAgentForHost("");
  EXPECT_NE(agent.find("Reader 740-2"), std::string::npos) << agent;
  EXPECT_NE(agent.find("QtWebEngine/73.16"), std::string::npos);
  EXPECT_NE(agent.find("Qt/5.15.8"), std::string::npos);
  EXPECT_NE(agent.find("U740.6.10.1508"), std::string::npos);
  for (unsigned char c : agent) EXPECT_GE(c, 0x20);

  std::ofstream(lumenpress::platform::DeviceRoot() + "/coreapp/config/user_agent.cfg") << "books.example=Special/1\n";
  UserAgentConfig config("5.15.8", "73.16");
  EXPECT_EQ(config.userAgentForHost("books.example"), "Special/1");
  EXPECT_EQ(config.userAgentForHost("other.example"), agent);
}

TEST(SerializationUtils, KnownVectorsAndRoundTrips) {
  const std::pair<const char *, const char *> vectors[] = {{"", ""},
                                                           {"f", "Zg=="},
                                                           {"fo", "Zm8="},
                                                           {"foo", "Zm9v"},
                                                           {"foob", "Zm9vYg=="},
                                                           {"fooba", "Zm9vYmE="},
                                                           {"foobar", "Zm9vYmFy"}};
  for (const auto &[plain, encoded] : vectors) {
    EXPECT_EQ(SerializationUtils::ToBase64(plain), encoded);
    EXPECT_EQ(SerializationUtils::FromBase64(encoded), plain);
  }
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  for (size_t length = 0; length <= all.size(); length += 37) {
    const std::string data = all.substr(all.size() - length);
    EXPECT_EQ(SerializationUtils::FromBase64(SerializationUtils::ToBase64(data)), data);
    EXPECT_EQ(SerializationUtils::FromHex(SerializationUtils::ToHex(data)), data);
  }
  EXPECT_EQ(SerializationUtils::ToHex("\x01\xab"), "01ab");
  EXPECT_EQ(SerializationUtils::FromHex("01AB"), "\x01\xab");
}

TEST(SerializationUtils, UrlSafeAlphabetAndMalformedInput) {
  EXPECT_EQ(SerializationUtils::FromBase64("-_8"), "\xfb\xff");
  EXPECT_EQ(SerializationUtils::FromBase64("Zm9vYg"), "foob");
  for (const char *bad : {"Zm9v!", "Z", "Zm9vY", "Zg===", "Z=g="})
    EXPECT_EQ(SerializationUtils::FromBase64(bad), "") << bad;
  EXPECT_EQ(SerializationUtils::FromHex("abc"), "");
  EXPECT_EQ(SerializationUtils::FromHex("zz"), "");
}
