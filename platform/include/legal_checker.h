// The device's consent dialog for the legal documents of its services.
#ifndef LUMENPRESS_LEGAL_CHECKER_H
#define LUMENPRESS_LEGAL_CHECKER_H

#include <string>
#include <vector>

class LegalChecker {
public:
  enum ServiceType {
    kDevice = 0,
    kCloud = 1,
    kBookstore = 2,
    kReadingSocial = 3,
    kSendToDevice = 4,
  };

  static bool isLegalAccepted(const std::vector<ServiceType> &services);
  // Shows the dialog and waits for the owner's answer; true when every document was accepted.
  static bool runLegalUIAndWait(const std::vector<ServiceType> &services, bool force, const std::string &language,
                                const std::string &email, int flags);
  static bool runLegalUIForServiceAndWait(const std::vector<ServiceType> &services, const std::string &language,
                                          const std::string &email, int flags);
};

#endif
