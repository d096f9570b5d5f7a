#include "account_manager.h"

#include "cfg_wrapper.h"

namespace lumenpress::utilities {

namespace {

constexpr char kBookstoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";
// Where the host keeps the tokens of the side services.
constexpr char kServicesConfig[] = "/mnt/ext1/system/config/services_auth.cfg";
constexpr int kStoreAccount = 1;

// The keys of a service's token pair, by the service's number.
std::pair<std::string, std::string> tokenKeys(int service) {
  if (service == kStoreAccount) return {"sac_access_token", "sac_refresh_token"};
  const std::string prefix = "service" + std::to_string(service) + "_";
  return {prefix + "access_token", prefix + "refresh_token"};
}

const char *configOf(int service) {
  return service == kStoreAccount ? kBookstoreConfig : kServicesConfig;
}

constexpr int kShelfnote = 3;
constexpr int kSendToDevice = 4;

void saveTokens(int service, const SingleAuth::Token &token) {
  CfgWrapper config(configOf(service), 1);
  const auto keys = tokenKeys(service);
  config.write<CfgSecret>(keys.first, token.access_token);
  config.write<CfgSecret>(keys.second, token.refresh_token);
  config.save();
}

}  // namespace

bool AccountManager::isLoggedIn(int service) {
  const CfgWrapper config(configOf(service), 0);
  return !config.read<CfgSecret>(tokenKeys(service).first, "").empty();
}

// Signing the store account out takes its tokens with it, so a restarted store is signed out.
void AccountManager::logOut(int service) {
  CfgWrapper config(configOf(service), 1);
  const auto keys = tokenKeys(service);
  config.remove(keys.first);
  config.remove(keys.second);
  config.save();
}

void AccountManager::saveShelfnoteTokens(const SingleAuth::Token &token) {
  saveTokens(kShelfnote, token);
}

void AccountManager::saveSend2LpTokens(const SingleAuth::Token &token) {
  saveTokens(kSendToDevice, token);
}

}  // namespace lumenpress::utilities
