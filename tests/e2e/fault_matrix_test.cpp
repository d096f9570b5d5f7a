// Every way a store can fail, at every kind of request the program makes of it: each ends in
// its documented error, with no crash, no hang and no file left half written.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "bookstore_api.h"
#include "catalogue_recorder.h"
#include "device_path.h"
#include "devstore_process.h"
#include "http_request.h"
#include "http_request_runner.h"
#include "opds/data_manager.h"

using namespace lumenpress::opds;
using lumenpress::platform::MapDevicePath;
using lumenpress::testing::CatalogueRecorder;
using lumenpress::testing::DevstoreProcess;
using lumenpress::utilities::HttpRequest;
using lumenpress::utilities::HttpRequestRunner;
namespace fs = std::filesystem;

namespace {

const char kCache[] = "/mnt/ext1/system/cache/bookstore_feeds_cache";
const char kDownloads[] = "/mnt/ext1/Downloads";
constexpr int kTimeoutSeconds = 1;

// The order of every row of outcomes below.
struct Fault {
  const char *name;
  const char *member;
  int value;
};
const Fault kFaults[] = {{"status 500", "status", 500},
                         {"delay past the time-out", "delay_ms", (kTimeoutSeconds + 2) * 1000},
                         {"dropped connection", "drop", 1},
                         {"truncated body", "truncate", 1},
                         {"broken body", "break", 1}};

bool isEmptyFolder(const std::string &device_path) {
  std::error_code error;
  return fs::is_empty(MapDevicePath(device_path), error) && !error;
}

class FaultMatrixTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(store_.running());
    setenv("LUMENPRESS_OPDS_TIMEOUT", std::to_string(kTimeoutSeconds).c_str(), 1);
    manager_.Init();
    manager_.setDiskCache(kCache, "bookstore_feeds_cache");
    manager_.SetFileDownloadFolder(kDownloads);
  }

  // Makes one attempt under each fault in turn, each fault on the next request to `path`, and
  // gives the error each attempt ended in. `delay_ms` replaces the delay of the table.
  std::vector<int> underEachFault(const std::string &path, const std::function<int()> &attempt, int delay_ms = 0) {
    std::vector<int> errors;
    for (const Fault &fault : kFaults) {
      Json::Value request;
      request["path"] = path;
      request[fault.member] = delay_ms > 0 && fault.member == std::string("delay_ms") ? delay_ms : fault.value;
      EXPECT_TRUE(store_.addFault(request)) << fault.name;
      SCOPED_TRACE(fault.name);
      errors.push_back(attempt());
    }
    return errors;
  }

  // ListLoaded's error for a list request that `start` makes.
  int listError(const std::function<void()> &start) {
    const std::size_t before = recorder_.lists.size();
    start();
    EXPECT_TRUE(CatalogueRecorder::pump(manager_, [&] { return recorder_.lists.size() > before; }));
    return recorder_.lists.size() > before ? recorder_.lists.back().first : 0;
  }

  std::shared_ptr<ItemsList> load(const std::string &url) {
    auto list = manager_.GetList(url);
    EXPECT_TRUE(CatalogueRecorder::pump(manager_, [&] { return CatalogueRecorder::loaded(list); })) << url;
    return list;
  }

  DevstoreProcess store_;
  CatalogueRecorder recorder_;
  DataManager manager_{&recorder_};
};

TEST_F(FaultMatrixTest, HomeFeed) {
  const std::string url = store_.opds() + "home";
  std::shared_ptr<ItemsList> home;
  const auto attempt = [&] { return listError([&] { home = manager_.GetList(url); }); };
  EXPECT_EQ(underEachFault("/de_de/lpress/opds/home", attempt), std::vector<int>({500, -1, -1, -1, -2}));
  EXPECT_FALSE(home->loading);
  EXPECT_TRUE(home->entries.empty());
  EXPECT_TRUE(isEmptyFolder(kCache)) << "a failed answer reached the feed cache";
  EXPECT_FALSE(load(url)->entries.empty());
}

TEST_F(FaultMatrixTest, ListPage) {
  const auto list = load(store_.opds() + "genre?id=crime");
  const std::size_t first_page = list->entries.size();
  ASSERT_GT(first_page, 0u);
  const auto attempt = [&] { return listError([&] { EXPECT_EQ(manager_.LoadNextPage(list), 0); }); };
  EXPECT_EQ(underEachFault("/de_de/lpress/opds/genre", attempt), std::vector<int>({500, -1, -1, -1, -2}));
  EXPECT_EQ(list->Feeds().size(), 1u);
  EXPECT_EQ(list->entries.size(), first_page);
  EXPECT_EQ(listError([&] { manager_.LoadNextPage(list); }), 0);
  EXPECT_EQ(list->Feeds().size(), 2u);
}

// The cover provider's transport. To it a broken body is a whole exchange, of bytes that the
// decoder then meets; every other fault is a failure with nothing that looks like a body.
TEST_F(FaultMatrixTest, CoverThroughTheHttpRunner) {
  const std::string url = store_.url("/covers/43.jpg");
  std::vector<char> whole;
  long status = 0;
  ASSERT_EQ(HttpRequestRunner().PerformRequest(HttpRequest("GET", url), &status, &whole, kTimeoutSeconds), 0);
  const auto attempt = [&] {
    std::vector<char> body;
    const int error = HttpRequestRunner().PerformRequest(HttpRequest("GET", url), &status, &body, kTimeoutSeconds);
    if (error != 0) {
      EXPECT_TRUE(body.empty());
    } else if (status == 200) {
      EXPECT_LT(body.size(), whole.size());
      EXPECT_EQ(body.back(), '\0');
    }
    return error != 0 ? -1 : static_cast<int>(status);
  };
  EXPECT_EQ(underEachFault("/covers/", attempt), std::vector<int>({500, -1, -1, -1, 200}));
}

TEST_F(FaultMatrixTest, Download) {
  const auto free_books = load(store_.opds() + "list?name=free");
  std::shared_ptr<OPDS::Entry> book;
  for (const auto &entry : free_books->entries) {
    const auto link = entry->GetLinkByType(OPDS::Link::kOpenAccess);
    if (!book && link && link->mime == "application/epub+zip") book = entry;
  }
  ASSERT_TRUE(book);
  const auto attempt = [&] {
    const std::size_t before = recorder_.books.size();
    manager_.DownloadBook(free_books, book, 0);
    EXPECT_TRUE(CatalogueRecorder::pump(manager_, [&] { return recorder_.books.size() > before; }));
    if (recorder_.books.size() == before) return 0;
    const int error = recorder_.books.back().error;
    if (error == -1) {
      EXPECT_NE(manager_.GetLastDownloadInfo().transfer_error, 0);
    }
    if (error != 0) {
      EXPECT_TRUE(isEmptyFolder(kDownloads));
    }
    return error;
  };
  // A broken body is a book cut short under an honest length.
  EXPECT_EQ(underEachFault("/de_de/lpress/download", attempt), std::vector<int>({500, -1, -1, -1, -1}));
  ASSERT_EQ(attempt(), 0);
  EXPECT_EQ(fs::path(recorder_.books.back().file).parent_path(), kDownloads);
  EXPECT_EQ(std::distance(fs::directory_iterator(MapDevicePath(kDownloads)), fs::directory_iterator()), 1);
}

// The REST client's time-out is its own 30 seconds, so this case takes that long.
TEST_F(FaultMatrixTest, RestCall) {
  BookstoreApi api(nullptr);
  api.setBaseUrl(store_.url("/de_de/"));
  api.setTokens(store_.accessToken(), "refresh token");
  BookstoreApi::UserInfo user;
  const auto attempt = [&] { return static_cast<int>(api.getUserInfo(&user)); };
  EXPECT_EQ(underEachFault("/de_de/rest/V1/customers/me", attempt, 31000),
            std::vector<int>({BookstoreApi::kHttpError, BookstoreApi::kNetworkError, BookstoreApi::kNetworkError,
                              BookstoreApi::kNetworkError, BookstoreApi::kFail}));
  EXPECT_TRUE(user.email.empty());
  EXPECT_EQ(api.getUserInfo(&user), BookstoreApi::kNoError);
  EXPECT_EQ(user.email, "reader@example.com");
}

}  // namespace
