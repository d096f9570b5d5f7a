// A devstore of its own for one test: started on a free port with a fresh data folder under
// the test's device root, and stopped when the object goes.
#ifndef LUMENPRESS_TESTS_DEVSTORE_PROCESS_H
#define LUMENPRESS_TESTS_DEVSTORE_PROCESS_H

#include <json/json.h>
#include <sys/types.h>

#include <string>
#include <vector>

namespace lumenpress::testing {

struct HttpAnswer {
  // 0 for a transport failure, then `error` holds libcurl's code.
  long status = 0;
  int error = 0;
  std::string body;
};

class DevstoreProcess {
public:
  // Data folder "<device root>/devstore" unless given; an existing folder is reused.
  explicit DevstoreProcess(const std::string &dataFolder = "");
  ~DevstoreProcess();
  DevstoreProcess(const DevstoreProcess &) = delete;
  DevstoreProcess &operator=(const DevstoreProcess &) = delete;

  bool running() const { return port_ > 0; }
  int port() const { return port_; }
  // "http://127.0.0.1:<port>" followed by `path`.
  std::string url(const std::string &path) const;
  // The OPDS folder of a store, such as ".../de_de/lpress/opds/".
  std::string opds(const std::string &store = "de_de") const;

  // `path` may also be a whole URL; each header is given as "Name: value".
  HttpAnswer get(const std::string &path, const std::vector<std::string> &headers = {}, int timeout = 30) const;
  HttpAnswer send(const std::string &method, const std::string &path, const std::string &body,
                  const std::vector<std::string> &headers = {"Content-Type: application/json"}) const;

  // The control interface.
  Json::Value requests() const;
  void clearRequests() const;
  bool addFault(const Json::Value &fault) const;
  // An access token of the seeded customer.
  std::string accessToken() const;

  void stop();

private:
  HttpAnswer exchange(const std::string &method, const std::string &path, const std::string &body,
                      const std::vector<std::string> &headers, int timeout) const;

  pid_t pid_ = -1;
  int port_ = 0;
};

}  // namespace lumenpress::testing

#endif
