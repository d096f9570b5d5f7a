#include "services_helper.h"

#include "cfg_wrapper.h"

using lumenpress::utilities::CfgWrapper;

namespace lumenpress::legal {

const std::map<LegalChecker::ServiceType, std::string> &ServicesHelper::servicesNames() {
  static const std::map<LegalChecker::ServiceType, std::string> names = {
      {LegalChecker::kDevice, "e-ink"},
      {LegalChecker::kCloud, "lpcloud.lumenpress.com"},
      {LegalChecker::kBookstore, "bookstore"},
      {LegalChecker::kReadingSocial, "shelfnote.lumenpress.com"},
      {LegalChecker::kSendToDevice, "send-to-lumenpress"},
  };
  return names;
}

std::string ServicesHelper::serviceName(LegalChecker::ServiceType type) {
  const auto found = servicesNames().find(type);
  return found == servicesNames().end() ? std::string() : found->second;
}

std::vector<std::string> ServicesHelper::serviceNames(const std::vector<LegalChecker::ServiceType> &types) {
  std::vector<std::string> names;
  for (const auto type : types) names.push_back(serviceName(type));
  return names;
}

std::string ServicesHelper::pendingConsentTag(LegalChecker::ServiceType type) {
  return "legal_pending:" + serviceName(type);
}

std::string ServicesHelper::getBookstoreLang() {
  CfgWrapper config("/mnt/ext1/system/config/bookstore.cfg", 0);
  const std::string language = config.read<std::string>("default_store_lang_code", "");
  config.closeNoSave();
  return language;
}

}  // namespace lumenpress::legal
