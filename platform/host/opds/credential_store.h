// Bearer tokens by URL prefix, read by the workers for every request.
#ifndef LUMENPRESS_HOST_OPDS_CREDENTIAL_STORE_H
#define LUMENPRESS_HOST_OPDS_CREDENTIAL_STORE_H

#include <map>
#include <mutex>
#include <string>

#include "opds/credentials.h"

namespace lumenpress::opds {

class CredentialStore {
public:
  void add(const std::string &key, const std::string &token);
  void clear();
  // The headers for a request to url: the token of the longest key that begins it.
  std::map<std::string, std::string> headersFor(const std::string &url) const;

private:
  mutable std::mutex mutex_;
  std::map<std::string, Credentials> credentials_;
};

}  // namespace lumenpress::opds

#endif
