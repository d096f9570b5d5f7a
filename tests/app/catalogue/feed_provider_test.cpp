// FeedProvider: results run as they arrive, the 401 rule, search templates, and what a finished
// download turns out to be.
#include "feed_provider.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <QCoreApplication>
#include <QSignalSpy>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "device_path.h"

using lumenpress::opds::Feed;
using lumenpress::opds::ItemsList;
using lumenpress::opds::OPDS::Entry;
using lumenpress::opds::OPDS::Link;

namespace {

std::shared_ptr<ItemsList> listWithLinks(const std::string &url, std::vector<std::shared_ptr<Link>> links) {
  auto list = std::make_shared<ItemsList>(url);
  auto feed = std::make_shared<Feed>();
  feed->links = std::move(links);
  list->Feeds().push_back(feed);
  return list;
}

std::shared_ptr<Link> link(Link::LinkType type, const std::string &mime, const std::string &href) {
  auto made = std::make_shared<Link>();
  made->type = type;
  made->mime = mime;
  made->href = href;
  return made;
}

TEST(FeedProvider, AskForOneTokenRefreshAMinuteAndForgetFailuresOnSuccess) {
  FeedProvider &provider = FeedProvider::Instance();
  int64_t now = 1000;
  provider.setClock([&] { return now; });
  QSignalSpy refresh(&provider, &FeedProvider::needToRefreshToken);
  QSignalSpy changed(&provider, &FeedProvider::feedStatusChanged);
  const auto list = std::make_shared<ItemsList>("http://127.0.0.1:1/feed");

  for (int64_t time : {1000, 1060, 1061, 1100, 500}) {
    now = time;
    provider.ListLoaded(401, list);
  }
  EXPECT_EQ(refresh.count(), 3) << "at 1000, at 1061 and when the clock went back";
  EXPECT_EQ(changed.count(), 5);
  EXPECT_EQ(changed.last().at(0).toString(), "http://127.0.0.1:1/feed");

  provider.ListLoaded(500, list);
  EXPECT_TRUE(provider.isFailed(list->url));
  int status = 0;
  provider.GetFeed(list->url, &status);
  provider.GetFeed(list->url, &status);
  EXPECT_EQ(status, 3);
  provider.ListLoaded(401, list);
  EXPECT_FALSE(provider.isFailed(list->url));
}

TEST(FeedProvider, SearchUsesTheFeedsAtomTemplateAsItStands) {
  FeedProvider &provider = FeedProvider::Instance();
  EXPECT_EQ(provider.GetSearchList(nullptr, "x"), nullptr);
  EXPECT_EQ(provider.GetSearchList(std::make_shared<ItemsList>("http://127.0.0.1:1/a"), "x"), nullptr);

  const auto atom = listWithLinks(
      "http://127.0.0.1:1/store/opds/home",
      {link(Link::kSearch, "application/opensearchdescription+xml", "osd.xml"),
       link(Link::kSearch, "application/atom+xml", "search?q={searchTerms}&lang={language}&again={searchTerms}")});
  EXPECT_EQ(provider.GetSearchList(atom, "war peace")->url,
            "http://127.0.0.1:1/store/opds/search?q=war peace&lang=ua&again={searchTerms}");

  const auto plain = listWithLinks("http://127.0.0.1:1/home", {link(Link::kSearch, "application/atom+xml", "/find")});
  EXPECT_EQ(provider.GetSearchList(plain, "x")->url, "http://127.0.0.1:1/find");
}

TEST(FeedProvider, ContentTypeGivesAnExtensionOnlyWithAParameterOrLineEnd) {
  EXPECT_EQ(FeedProvider::GetContentMimeToExtension("application/epub+zip; charset=binary"), "epub");
  EXPECT_EQ(FeedProvider::GetContentMimeToExtension("application/pdf\r\n"), "pdf");
  EXPECT_EQ(FeedProvider::GetContentMimeToExtension("application/epub+zip"), "");
  EXPECT_EQ(FeedProvider::GetContentMimeToExtension("application/x-unknown;"), "");
}

// Whatever JSON a store sends in place of a book, its code and message are read where they are, and nothing throws.
TEST(FeedProvider, ErrorDocumentsOfAnyShapeGiveTheirCodeOrMinusOne) {
  struct Document {
    std::string text;
    int code;
    std::string message;
  };
  const Document documents[] = {
      {R"({"status_code": 403, "msg": {}})", 403, ""},
      {R"({"status_code": "x", "msg": "gone"})", -1, "gone"},
      {"[1]", -1, ""},
      {"\"t\"", -1, ""},
      {"{", -1, "unread"},
      {std::string(1001, '[') + std::string(1001, ']'), -1, "unread"},
  };
  const std::string file = "/mnt/ext1/Downloads/error.json";
  std::filesystem::create_directories(lumenpress::platform::MapDevicePath("/mnt/ext1/Downloads"));
  for (const Document &document : documents) {
    std::ofstream(lumenpress::platform::MapDevicePath(file)) << document.text;
    int code = -1;
    std::string message = "unread";
    FeedProvider::ParseErrorCode(file, code, message);
    EXPECT_EQ(code, document.code) << document.text;
    EXPECT_EQ(message, document.message) << document.text;
  }
}

// A store that answers a feed, and downloads in the ways a real one can go wrong.
class LocalStoreTest : public ::testing::Test {
protected:
  void SetUp() override {
    server_.Get("/feed", [](const httplib::Request &, httplib::Response &res) {
      res.set_content("<feed xmlns=\"http://www.w3.org/2005/Atom\"><title>Feed</title></feed>", "application/atom+xml");
    });
    server_.Get("/book.fb2.zip", [](const httplib::Request &, httplib::Response &res) {
      res.set_header("Content-Disposition", "attachment; filename=\"book.epub\"");
      res.set_content("PK epub", "application/epub+zip");
    });
    server_.Get("/error.epub", [](const httplib::Request &, httplib::Response &res) {
      res.set_content(R"({"status_code": 403,
                          "msg": "not yours"})",
                      "application/json");
    });
    server_.Get("/page.epub", [](const httplib::Request &, httplib::Response &res) {
      res.set_content("<html>sign in</html>", "text/html; charset=utf-8");
    });
    server_.Get("/cut.epub", [](const httplib::Request &, httplib::Response &res) {
      res.set_chunked_content_provider("application/epub+zip", [](size_t, httplib::DataSink &sink) {
        sink.write("PK", 2);
        return false;
      });
    });
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    while (!server_.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    FeedProvider::Instance().dataManager().SetFileDownloadFolder("/mnt/ext1/Downloads");
  }

  void TearDown() override {
    server_.stop();
    thread_.join();
  }

  // Downloads `path` as a book and waits for the provider's verdict.
  QList<QVariant> download(const std::string &path, bool expectSuccess) {
    auto entry = std::make_shared<Entry>();
    entry->id = "book-" + path;
    entry->title = "Title";
    entry->links.push_back(link(Link::kOpenAccess, "application/epub+zip", path));
    auto list = std::make_shared<ItemsList>(url("/feed"));
    FeedProvider &provider = FeedProvider::Instance();
    QSignalSpy loaded(&provider, &FeedProvider::bookDownloaded);
    QSignalSpy failed(&provider, &FeedProvider::bookDownloadFailed);
    provider.dataManager().DownloadBook(list, entry, 0);
    QSignalSpy &expected = expectSuccess ? loaded : failed;
    EXPECT_TRUE(expected.wait(10000)) << path;
    return expected.isEmpty() ? QList<QVariant>() : expected.takeFirst();
  }

  std::string url(const std::string &path) const { return "http://127.0.0.1:" + std::to_string(port_) + path; }

  static bool exists(const QString &file) {
    return std::filesystem::exists(lumenpress::platform::MapDevicePath(file.toStdString()));
  }

  httplib::Server server_;
  int port_ = 0;
  std::thread thread_;
};

TEST_F(LocalStoreTest, AWaitingResultIsRunWithoutWaitingForThePoll) {
  FeedProvider &provider = FeedProvider::Instance();
  QSignalSpy changed(&provider, &FeedProvider::feedStatusChanged);
  int status = 0;
  provider.GetFeed(url("/feed"), &status);
  // Only posted events are delivered here, never the poll timer's.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (changed.isEmpty() && std::chrono::steady_clock::now() < deadline) {
    QCoreApplication::sendPostedEvents();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(provider.GetFeed(url("/feed"), &status)->getTitle(), "Feed");
}

TEST_F(LocalStoreTest, ADispositionNameRenamesTheWholeZipExtension) {
  const auto loaded = download("/book.fb2.zip", true);
  ASSERT_EQ(loaded.size(), 4);
  EXPECT_TRUE(loaded[0].toString().endsWith("/book.epub")) << loaded[0].toString().toStdString();
  EXPECT_TRUE(exists(loaded[0].toString()));
  EXPECT_EQ(loaded[1].toString(), "book-/book.fb2.zip");
  EXPECT_EQ(loaded[3].toString(), "");
}

TEST_F(LocalStoreTest, AnErrorDocumentOrAWebPageIsNoBookAndIsDeleted) {
  for (const auto &[path, status] : {std::pair<std::string, int>{"/error.epub", 403}, {"/page.epub", 0}}) {
    const auto failed = download(path, false);
    ASSERT_EQ(failed.size(), 4) << path;
    EXPECT_EQ(failed[2].toInt(), 2) << path;
    EXPECT_EQ(failed[3].toInt(), status) << path;
    EXPECT_FALSE(exists(failed[0].toString())) << path;
  }
}

TEST_F(LocalStoreTest, ACutConnectionReportsTheTransferError) {
  const auto failed = download("/cut.epub", false);
  ASSERT_EQ(failed.size(), 4);
  EXPECT_NE(failed[2].toInt(), 0);
  EXPECT_EQ(failed[3].toInt(), 0);
}

}  // namespace
