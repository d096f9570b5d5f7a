// The device's services by their names in the legal documents, and the store's language.
#ifndef LUMENPRESS_LEGAL_SERVICES_HELPER_H
#define LUMENPRESS_LEGAL_SERVICES_HELPER_H

#include <map>
#include <string>
#include <vector>

#include "legal_checker.h"

namespace lumenpress::legal {

class ServicesHelper {
public:
  static const std::map<LegalChecker::ServiceType, std::string> &servicesNames();
  static std::string serviceName(LegalChecker::ServiceType type);
  static std::vector<std::string> serviceNames(const std::vector<LegalChecker::ServiceType> &types);
  // The device tag of a service whose documents were agreed to before an account was known.
  static std::string pendingConsentTag(LegalChecker::ServiceType type);
  // "default_store_lang_code" of bookstore.cfg.
  static std::string getBookstoreLang();
};

}  // namespace lumenpress::legal

#endif
