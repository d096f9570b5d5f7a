// The consent flows: agreeing to and discarding the documents of services in bulk, reporting
// consent to the legal service, and keeping and showing the documents themselves.
#ifndef LUMENPRESS_LEGAL_HELPER_H
#define LUMENPRESS_LEGAL_HELPER_H

#include <string>
#include <vector>

#include "legal_checker.h"

namespace lumenpress::legal {

class LegalHelper {
public:
  enum DocumentType { kEula = 0, kPrivacyNotice = 1, kTermsOfUse = 2 };

  static constexpr const char *kUserFolder = "/mnt/ext1/system/license";
  static std::string documentName(DocumentType type);
  // The device's tool that brings the documents that apply into the store; false when it failed.
  static bool runConsentRefresh();
  // Where a document's file lies: the program's own copy, or the device's built-in one.
  static std::string documentFilePath(const std::string &name, const std::string &version, const std::string &language,
                                      bool userCopy);

  void agreeWithAllDocumentsForServices(const std::vector<LegalChecker::ServiceType> &services,
                                        const std::string &userId, const bool sendNow, const std::string &sessionId);
  void discardPreagreedDocumentsForServices(const std::vector<LegalChecker::ServiceType> &services,
                                            const std::string &userId);
  // True when every document of the services is agreed to, or agreed ahead of login.
  bool isAccepted(const std::vector<LegalChecker::ServiceType> &services);
  void sendPendingAgreements();
  // Written to a ".tmp" file and renamed: the name exists only when the file is complete.
  bool downloadDocument(const std::string &name, const std::string &version, const std::string &language,
                        const std::string &url);
  bool openDocumentInBrowser(LegalChecker::ServiceType service, DocumentType document, bool fullscreen,
                             std::string language, bool forceOffline);
  bool openDocumentInBrowser(std::string name, std::string version, std::string language, std::string url,
                             std::string title, bool fullscreen, bool forceOffline);

private:
  // The user's copy or the built-in file, each also in the form made for this device.
  static std::string existingFile(const std::string &name, const std::string &version, const std::string &language,
                                  bool *builtIn);
};

}  // namespace lumenpress::legal

#endif
