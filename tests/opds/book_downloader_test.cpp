// Downloads against a server of the test's own, which sends each book exactly as given and
// announces the length it sends.
#include <curl/curl.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "book_downloader.h"
#include "device_path.h"

using lumenpress::opds::BookDownloader;
using lumenpress::opds::CredentialStore;
using lumenpress::platform::MapDevicePath;
namespace fs = std::filesystem;

namespace {

const char kFolder[] = "/mnt/ext1/Downloads";

class BookServer {
public:
  BookServer() {
    server_.Get(R"(/books/(.+))", [this](const httplib::Request &req, httplib::Response &res) {
      const auto book = books_.find(req.matches[1]);
      if (book == books_.end()) {
        res.status = 404;
        return;
      }
      res.set_content(book->second.second, book->second.first.c_str());
    });
    server_.Get("/stalled", [](const httplib::Request &, httplib::Response &) { pause(); });
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
  }
  ~BookServer() {
    server_.stop();
    thread_.join();
  }

  // Before the first request: the handlers read the books without a lock.
  void add(const std::string &name, const std::string &type, const std::string &body) { books_[name] = {type, body}; }
  std::string url(const std::string &path) const { return "http://127.0.0.1:" + std::to_string(port_) + path; }

private:
  httplib::Server server_;
  std::map<std::string, std::pair<std::string, std::string>> books_;
  int port_ = 0;
  std::thread thread_;
};

BookDownloader::Result download(const std::string &url) {
  CredentialStore credentials;
  return BookDownloader(credentials).download(url, kFolder, "book", "test agent", {});
}

std::vector<std::string> filesIn(const std::string &device_folder) {
  std::vector<std::string> names;
  for (const auto &entry : fs::directory_iterator(MapDevicePath(device_folder))) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string readFile(const std::string &device_path) {
  std::ifstream in(MapDevicePath(device_path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// A ZIP archive as far as its end matters: a local header, the content, and the end record.
std::string zipped(const std::string &content, const std::string &comment = "") {
  std::string end_record = std::string("PK\x05\x06", 4) + std::string(16, '\0');
  end_record += static_cast<char>(comment.size() & 0xff);
  end_record += static_cast<char>(comment.size() >> 8);
  return std::string("PK\x03\x04", 4) + content + end_record + comment;
}

}  // namespace

TEST(BookDownloader, BooksCutShortUnderAnHonestLengthAreFailedDownloads) {
  const std::string epub = zipped("mimetypeapplication/epub+zip" + std::string(3000, 'e'));
  const std::string pdf = "%PDF-1.4\n" + std::string(3000, 'p') + "\n%%EOF";
  struct Case {
    std::string name;
    std::string type;
    std::string body;
    bool whole;
  };
  const std::vector<Case> cases = {
      {"whole.epub", "application/epub+zip", epub, true},
      {"commented.zip", "application/zip", zipped("z", std::string(300, 'c')), true},
      {"padded.pdf", "application/pdf", pdf + "\r\n \t\n", true},
      {"story.fb2", "application/fb2", "<FictionBook>cut short", true},
      // An error document in place of a book is for the program to judge.
      {"refused.epub", "application/json", R"({"status_code": 403})", true},
      {"cut.epub", "application/epub+zip", epub.substr(0, epub.size() - 10), false},
      {"early.fb2.zip", "application/fb2+zip", epub.substr(0, 1500), false},
      {"cut.pdf", "application/pdf", pdf.substr(0, 2000), false},
      {"zip-named.txt", "text/plain", std::string("PK\x03\x04", 4) + "abc", false},
  };
  BookServer server;
  for (const Case &book : cases) server.add(book.name, book.type, book.body);
  for (const Case &book : cases) {
    const auto result = download(server.url("/books/" + book.name));
    if (book.whole) {
      EXPECT_EQ(result.error, 0) << book.name;
      EXPECT_EQ(readFile(result.file), book.body) << book.name;
    } else {
      EXPECT_EQ(result.error, -1) << book.name;
      EXPECT_EQ(result.info.transfer_error, CURLE_PARTIAL_FILE) << book.name;
      EXPECT_TRUE(result.file.empty()) << book.name;
      EXPECT_FALSE(fs::exists(MapDevicePath(std::string(kFolder) + "/" + book.name))) << book.name;
    }
  }
  EXPECT_EQ(filesIn(kFolder),
            std::vector<std::string>({"commented.zip", "padded.pdf", "refused.epub", "story.fb2", "whole.epub"}));
}

TEST(BookDownloader, PartFilesOfKilledDownloadsGoAtTheFirstDownloadOfTheNextStart) {
  // Forked before any thread of this process runs: the child downloads from a server that never answers.
  const pid_t killed = fork();
  if (killed == 0) {
    BookServer stalled;
    download(stalled.url("/stalled"));
    _exit(0);
  }
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  fs::create_directories(MapDevicePath(kFolder));
  while (filesIn(kFolder).empty() && std::chrono::steady_clock::now() < deadline) {
  }
  kill(killed, SIGKILL);
  waitpid(killed, nullptr, 0);
  const std::vector<std::string> left = filesIn(kFolder);
  ASSERT_EQ(left.size(), 1u);

  // As old, beside it: the part file of a download still at work in another process.
  const pid_t running = fork();
  if (running == 0) {
    pause();
    _exit(0);
  }
  const std::string busy = ".download-" + std::to_string(running) + "-0.part";
  std::ofstream(MapDevicePath(std::string(kFolder) + "/" + busy)) << "partial";
  for (const std::string &name : {left[0], busy}) {
    fs::last_write_time(MapDevicePath(std::string(kFolder) + "/" + name),
                        fs::file_time_type::clock::now() - std::chrono::hours(1));
  }

  BookServer server;
  server.add("next.epub", "application/epub+zip", zipped("next"));
  EXPECT_EQ(download(server.url("/books/next.epub")).error, 0);
  kill(running, SIGKILL);
  waitpid(running, nullptr, 0);
  std::vector<std::string> kept = {busy, "next.epub"};
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(filesIn(kFolder), kept);
}
