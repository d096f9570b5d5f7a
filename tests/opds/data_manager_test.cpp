#include <fcntl.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "catalogue_recorder.h"
#include "device_path.h"
#include "opds/data_manager.h"
#include "opds/last_search.h"

using namespace lumenpress::opds;
using lumenpress::testing::CatalogueRecorder;

namespace {

std::string entryXml(const std::string &id, const std::string &title) {
  return "<entry><id>" + id + "</id><title>" + title +
         "</title><author><name>Ann Author</name></author>"
         "<link rel=\"http://opds-spec.org/acquisition/open-access\" type=\"application/epub+zip\" href=\"/files/" +
         id + ".epub\"/><link rel=\"http://opds-spec.org/image\" type=\"image/png\" href=\"covers/" + id +
         ".png\"/></entry>";
}

// A feed of `count` entries whose ids start at `first`, with an optional next page.
std::string feedXml(const std::string &title, int first, int count, const std::string &next = "") {
  std::string xml =
      "<?xml version=\"1.0\"?><feed xmlns=\"http://www.w3.org/2005/Atom\" "
      "xmlns:opensearch=\"http://a9.com/-/spec/opensearch/1.1/\"><id>feed</id><title>" +
      title + "</title><opensearch:totalResults>45</opensearch:totalResults>" +
      "<link rel=\"search\" type=\"application/opensearchdescription+xml\" href=\"/osd.xml\"/>";
  if (!next.empty()) xml += "<link rel=\"next\" type=\"application/atom+xml\" href=\"" + next + "\"/>";
  for (int i = first; i < first + count; ++i) xml += entryXml("book-" + std::to_string(i), "Book " + std::to_string(i));
  return xml + "</feed>";
}

class DataManagerTest : public ::testing::Test {
protected:
  void SetUp() override {
    const std::pair<const char *, std::string> pages[] = {{"/home", feedXml("Home", 0, 20, "page/2")},
                                                          {"/page/2", feedXml("Home", 20, 20, "/page/3")},
                                                          {"/page/3", feedXml("Home", 40, 5)}};
    for (const auto &[path, xml] : pages) {
      server_.Get(path, [this, xml = xml](const httplib::Request &req, httplib::Response &res) {
        record(req);
        res.set_content(xml, "application/atom+xml");
      });
    }
    // A template that leads nowhere ahead of the description: the description is the one to use.
    std::string both = feedXml("Both", 0, 1);
    both.insert(
        both.find("<link rel=\"search\""),
        "<link rel=\"search\" type=\"application/atom+xml;profile=opds-catalog\" href=\"/nowhere?q={searchTerms}\"/>");
    server_.Get("/both", [both](const httplib::Request &, httplib::Response &res) {
      res.set_content(both, "application/atom+xml");
    });
    server_.Get("/osd.xml", [](const httplib::Request &, httplib::Response &res) {
      res.set_content(
          "<OpenSearchDescription xmlns=\"http://a9.com/-/spec/opensearch/1.1/\"><Url type=\"text/html\" "
          "template=\"/html?q={searchTerms}\"/><Url type=\"application/atom+xml\" "
          "template=\"/search?q={searchTerms}&amp;page={startPage?}\"/></OpenSearchDescription>",
          "application/opensearchdescription+xml");
    });
    server_.Get("/search", [this](const httplib::Request &req, httplib::Response &res) {
      record(req);
      res.set_content(feedXml("Results for " + req.get_param_value("q"), 100, 2), "application/atom+xml");
    });
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
  }

  void TearDown() override {
    server_.stop();
    thread_.join();
  }

  void record(const httplib::Request &req) {
    std::lock_guard<std::mutex> lock(requests_mutex_);
    requests_.push_back(req.path + " auth=" + req.get_header_value("Authorization") +
                        " etag=" + req.get_header_value("If-None-Match"));
  }

  std::vector<std::string> requests() {
    std::lock_guard<std::mutex> lock(requests_mutex_);
    return requests_;
  }

  std::string url(const std::string &path) const { return "http://127.0.0.1:" + std::to_string(port_) + path; }

  static constexpr auto pump = &CatalogueRecorder::pump;
  static constexpr auto loaded = &CatalogueRecorder::loaded;

  httplib::Server server_;
  int port_ = 0;
  std::thread thread_;
  std::mutex requests_mutex_;
  std::vector<std::string> requests_;
  CatalogueRecorder recorder_;
};

}  // namespace

TEST_F(DataManagerTest, ListLoadsOnTheWorkersAndArrivesOnlyThroughProcessResults) {
  DataManager manager(&recorder_);
  manager.Init();
  auto list = manager.GetList(url("/home"));
  ASSERT_TRUE(list);
  EXPECT_TRUE(list->loading);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_TRUE(list->loading) << "results wait for ProcessResults";
  EXPECT_TRUE(recorder_.lists.empty());

  ASSERT_TRUE(pump(manager, [&] { return loaded(list); }));
  ASSERT_EQ(recorder_.lists.size(), 1u);
  EXPECT_EQ(recorder_.lists[0].first, 0);
  EXPECT_EQ(recorder_.lists[0].second, list);
  EXPECT_EQ(list->entries.size(), 20u);
  EXPECT_EQ(list->getTitle(), "Home");
  EXPECT_EQ(std::string(list->Feeds()[0]->total_results), "45");
  EXPECT_EQ(manager.GetList(url("/home")), list) << "one shared list per URL";
  EXPECT_EQ(requests().size(), 1u) << "a loaded list is not fetched again";
  EXPECT_EQ(manager.getCoverUrl(list, 0), url("/covers/book-0.png"));
}

TEST_F(DataManagerTest, AWaitingResultWakesTheOwnerFromAWorkerAgainAfterEachRun) {
  DataManager manager(&recorder_);
  manager.Init();
  std::mutex mutex;
  std::condition_variable woken;
  std::vector<std::thread::id> wakers;
  manager.SetResultsWaitingHandler([&] {
    std::lock_guard<std::mutex> lock(mutex);
    wakers.push_back(std::this_thread::get_id());
    woken.notify_all();
  });
  const auto waitForWake = [&](size_t count) {
    std::unique_lock<std::mutex> lock(mutex);
    return woken.wait_for(lock, std::chrono::seconds(10), [&] { return wakers.size() >= count; });
  };

  manager.GetList(url("/home"));
  ASSERT_TRUE(waitForWake(1));
  EXPECT_TRUE(recorder_.lists.empty()) << "the handler only wakes; callbacks wait for ProcessResults";
  manager.ProcessResults();
  ASSERT_EQ(recorder_.lists.size(), 1u);

  manager.GetList(url("/page/2"));
  ASSERT_TRUE(waitForWake(2)) << "a run of the queue arms the next wake-up";
  manager.ProcessResults();
  EXPECT_EQ(recorder_.lists.size(), 2u);
  std::lock_guard<std::mutex> lock(mutex);
  for (const auto &waker : wakers) EXPECT_NE(waker, std::this_thread::get_id());
}

TEST_F(DataManagerTest, PagesAppendUntilThereIsNoNextLink) {
  DataManager manager(&recorder_);
  manager.Init();
  auto list = manager.GetList(url("/home"));
  ASSERT_TRUE(pump(manager, [&] { return loaded(list); }));
  EXPECT_FALSE(list->reset_required) << "a first page needs no second reset";
  for (size_t pages = 2; pages <= 3; ++pages) {
    ASSERT_EQ(manager.LoadNextPage(list), 0);
    ASSERT_TRUE(pump(manager, [&] { return loaded(list); }));
    EXPECT_EQ(list->Feeds().size(), pages);
    EXPECT_FALSE(list->reset_required);
  }
  EXPECT_EQ(list->entries.size(), 45u);
  EXPECT_EQ(list->entries.back()->id, "book-44");
  EXPECT_EQ(manager.LoadNextPage(list), -8);

  // Loaded anew, the list starts again at its first page, and its models must start over.
  EXPECT_EQ(manager.GetListEx(url("/home"), true), list);
  ASSERT_TRUE(pump(manager, [&] { return loaded(list); }));
  EXPECT_EQ(list->Feeds().size(), 1u);
  EXPECT_EQ(list->entries.size(), 20u);
  EXPECT_TRUE(list->reset_required);
}

TEST_F(DataManagerTest, BearerTokenGoesOnlyWhereItsKeyMatches) {
  DataManager manager(&recorder_);
  manager.Init();
  manager.AddBearerCredentials(url("/page"), "secret");
  auto home = manager.GetList(url("/home"));
  ASSERT_TRUE(pump(manager, [&] { return loaded(home); }));
  manager.LoadNextPage(home);
  ASSERT_TRUE(pump(manager, [&] { return loaded(home); }));
  manager.ClearCredentials();
  manager.LoadNextPage(home);
  ASSERT_TRUE(pump(manager, [&] { return loaded(home); }));
  const auto seen = requests();
  ASSERT_EQ(seen.size(), 3u);
  EXPECT_EQ(seen[0], "/home auth= etag=");
  EXPECT_EQ(seen[1], "/page/2 auth=Bearer secret etag=");
  EXPECT_EQ(seen[2], "/page/3 auth= etag=");
}

TEST_F(DataManagerTest, SearchGoesThroughTheOpenSearchDescription) {
  DataManager manager(&recorder_);
  manager.Init();
  auto home = manager.GetList(url("/home"));
  ASSERT_TRUE(pump(manager, [&] { return loaded(home); }));
  auto results = manager.GetSearchList(home, "war & peace");
  ASSERT_TRUE(results);
  ASSERT_TRUE(pump(manager, [&] { return loaded(results); }));
  EXPECT_EQ(results->getTitle(), "Results for war & peace");
  ASSERT_EQ(results->entries.size(), 2u);
  EXPECT_EQ(results->entries[0]->GetLinkByType(OPDS::Link::kOpenAccess)->href, url("/files/book-100.epub"))
      << "links of a result page are made absolute";

  auto both = manager.GetList(url("/both"));
  ASSERT_TRUE(pump(manager, [&] { return loaded(both); }));
  auto preferred = manager.GetSearchList(both, "sea");
  ASSERT_TRUE(pump(manager, [&] { return loaded(preferred); }));
  EXPECT_EQ(preferred->getTitle(), "Results for sea") << "the description, whatever link comes first";
}

// A loopback port that listens but never accepts: a connection to it stays in its queue for accept() to find.
class Listener {
public:
  Listener() : fd_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    bind(fd_, reinterpret_cast<sockaddr *>(&address), length);
    listen(fd_, 8);
    getsockname(fd_, reinterpret_cast<sockaddr *>(&address), &length);
    port_ = ntohs(address.sin_port);
    fcntl(fd_, F_SETFL, O_NONBLOCK);
  }
  ~Listener() { close(fd_); }
  int port() const { return port_; }
  bool connected() const {
    const int client = accept(fd_, nullptr, nullptr);
    if (client >= 0) close(client);
    return client >= 0;
  }

private:
  int fd_;
  int port_ = 0;
};

// Feeds and books come only over HTTP: any other scheme, given or reached by a redirect, is a transport failure
// that sends nothing anywhere.
TEST_F(DataManagerTest, OnlyHttpAndHttpsAreFetched) {
  const Listener raw;
  const std::string port = std::to_string(raw.port());
  server_.Get("/to-file",
              [](const httplib::Request &, httplib::Response &res) { res.set_redirect("file:///etc/hosts"); });
  server_.Get("/to-gopher", [port](const httplib::Request &, httplib::Response &res) {
    res.set_redirect("gopher://127.0.0.1:" + port + "/_raw");
  });
  DataManager manager(&recorder_);
  manager.Init();
  manager.SetFileDownloadFolder("/mnt/ext1/Downloads");
  const std::string urls[] = {"file:///etc/hosts",
                              "gopher://127.0.0.1:" + port + "/_raw",
                              "dict://127.0.0.1:" + port + "/d",
                              "ftp://127.0.0.1:" + port + "/f",
                              url("/to-file"),
                              url("/to-gopher")};
  for (const std::string &target : urls) {
    auto list = manager.GetList(target);
    ASSERT_TRUE(pump(manager, [&] { return loaded(list); })) << target;
    EXPECT_EQ(recorder_.lists.back().first, -1) << target;

    auto entry = std::make_shared<OPDS::Entry>();
    entry->id = target;
    auto link = std::make_shared<OPDS::Link>();
    link->type = OPDS::Link::kOpenAccess;
    link->mime = "application/epub+zip";
    link->href = target;
    entry->links.push_back(link);
    const size_t before = recorder_.books.size();
    manager.DownloadBook(list, entry, 0);
    ASSERT_TRUE(pump(manager, [&] { return recorder_.books.size() > before; })) << target;
    EXPECT_EQ(recorder_.books.back().error, -1) << target;
    EXPECT_EQ(recorder_.books.back().file, "") << target;
  }
  EXPECT_FALSE(raw.connected());
}

TEST(LastSearch, NewestFirstWithoutDuplicatesAndAtMostTwenty) {
  auto &last = LastSearch::Instance();
  for (int i = 0; i < 25; ++i) last.AddLastSearch("term " + std::to_string(i));
  last.AddLastSearch("  term 10 ");
  last.AddLastSearch("");
  const auto terms = last.GetLastSearch();
  ASSERT_EQ(terms.size(), 20u);
  EXPECT_EQ(terms[0], "term 10");
  EXPECT_EQ(terms[1], "term 24");
  EXPECT_EQ(std::count(terms.begin(), terms.end(), "term 10"), 1);
}
