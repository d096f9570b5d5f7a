// consent_refresh [-force] [-nosync] [-nosendunsent]: brings the documents that apply to the
// device into the consent store from the legal service, and reports consent not yet reported
// unless told not to.
#include <cstring>
#include <string>

#include "built_in_documents.h"
#include "legal_api.h"
#include "legal_data.h"
#include "legal_helper.h"
#include "lp_log.h"
#include "panelkit.h"

using lumenpress::legal::BuiltInDocuments;
using lumenpress::legal::LegalApi;
using lumenpress::legal::LegalData;
using lumenpress::legal::LegalDocument;
using lumenpress::legal::LegalHelper;

namespace {

void refreshDocuments() {
  LegalApi api;
  const std::string language = BuiltInDocuments::languageGroup(currentLang());
  std::vector<LegalDocument> documents;
  for (const auto &[name, version] : api.getDocumentList(language)) {
    const Json::Value info = api.getDocumentExtendedInfo(name, language, "", "");
    if (!info.isObject()) continue;
    LegalDocument document;
    document.name = name;
    document.version = version;
    document.title = info["title"].isString() ? info["title"].asString() : name;
    document.url = info["url"].isString() ? info["url"].asString() : std::string();
    std::string document_id;
    document.services.emplace_back();
    LegalApi::splitDocumentName(name, document.services.back(), document_id);
    documents.push_back(document);
  }
  if (!documents.empty()) LegalData().mergeDocument(documents);
  LP_LOG(LP_LOG_INFO, "consent_refresh: %d documents from the legal service", static_cast<int>(documents.size()));
}

}  // namespace

int main(int argc, char **argv) {
  bool send = true;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "-nosendunsent") == 0) send = false;
  }
  refreshDocuments();
  if (send) LegalHelper().sendPendingAgreements();
  return 0;
}
