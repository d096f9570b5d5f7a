// One version of a legal document and the owner's agreement to it.
#ifndef LUMENPRESS_LEGAL_DOCUMENT_H
#define LUMENPRESS_LEGAL_DOCUMENT_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "legal_agreement.h"

namespace lumenpress::legal {

struct LegalDocument {
  // "service|document", such as "e-ink|EULA".
  std::string name;
  std::string version;
  // A language key ("@EULA") for built-in documents, else a ready text.
  std::string title;
  std::string url;
  std::int64_t sort_order = 0;
  std::vector<std::string> services;
  LegalAgreement agreement;
};

// Document name, then version text.
using LegalDocuments = std::map<std::string, std::map<std::string, LegalDocument>>;

}  // namespace lumenpress::legal

#endif
