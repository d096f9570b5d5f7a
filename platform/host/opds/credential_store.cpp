#include "credential_store.h"

namespace lumenpress::opds {

void CredentialStore::add(const std::string &key, const std::string &token) {
  std::lock_guard<std::mutex> lock(mutex_);
  credentials_[key] = Credentials{key, token};
}

void CredentialStore::clear() {
  std::lock_guard<std::mutex> lock(mutex_);
  credentials_.clear();
}

std::map<std::string, std::string> CredentialStore::headersFor(const std::string &url) const {
  std::lock_guard<std::mutex> lock(mutex_);
  const Credentials *best = nullptr;
  for (const auto &[key, credentials] : credentials_) {
    if (url.compare(0, key.size(), key) == 0 && (!best || key.size() > best->key.size())) best = &credentials;
  }
  if (!best) return {};
  return {{"Authorization", "Bearer " + best->token}};
}

}  // namespace lumenpress::opds
