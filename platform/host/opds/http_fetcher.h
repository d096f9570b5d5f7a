// The catalogue library's transport: GET with the headers a catalogue needs, into memory
// or into a file, reporting the response headers that caching and downloads read.
#ifndef LUMENPRESS_HOST_OPDS_HTTP_FETCHER_H
#define LUMENPRESS_HOST_OPDS_HTTP_FETCHER_H

#include <atomic>
#include <functional>
#include <map>
#include <string>

namespace lumenpress::opds {

class HttpFetcher {
public:
  class Result {
  public:
    // 0 when an HTTP exchange took place; libcurl's code otherwise, also for a scheme other than http and https.
    int transport_error = 0;
    long status = 0;
    std::string body;
    std::string etag;
    std::string last_modified;
    std::string content_type;
    std::string content_disposition;
  };

  // Called with the percentage received; return false to stop the transfer.
  using Progress = std::function<bool(int percent)>;

  // 30 seconds, or LUMENPRESS_OPDS_TIMEOUT: tests of a stalled server need not wait that long.
  static long timeoutSeconds();

  HttpFetcher(std::string user_agent, std::map<std::string, std::string> headers);

  Result get(const std::string &url) const;
  // Writes the body to path; the file holds the whole body only when the result is a 200.
  Result download(const std::string &url, const std::string &path, const Progress &progress) const;

private:
  Result perform(const std::string &url, FILE *file, const Progress *progress) const;

  std::string user_agent_;
  std::map<std::string, std::string> headers_;
};

}  // namespace lumenpress::opds

#endif
