#include "token_file.h"

#include "cfg_wrapper.h"

namespace lumenpress::bookstore {

namespace {

const char kStoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";

}  // namespace

using utilities::CfgSecret;
using utilities::CfgWrapper;

void TokenFile::read(std::string *accessToken, std::string *refreshToken) {
  const CfgWrapper cfg(kStoreConfig, 0);
  if (cfg.read<CfgSecret>("sac_access_token", "").empty()) return;
  *accessToken = cfg.read<CfgSecret>("access_token", "");
  *refreshToken = cfg.read<CfgSecret>("refresh_token", "");
}

void TokenFile::write(const std::string &accessToken, const std::string &refreshToken) {
  CfgWrapper cfg(kStoreConfig, 1);
  WriteSecret(cfg, "access_token", accessToken.c_str());
  WriteSecret(cfg, "refresh_token", refreshToken.c_str());
  cfg.save();
}

}  // namespace lumenpress::bookstore
