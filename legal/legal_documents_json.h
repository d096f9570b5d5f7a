// The consent store's records as the JSON text that is enciphered on disk.
#ifndef LUMENPRESS_LEGAL_DOCUMENTS_JSON_H
#define LUMENPRESS_LEGAL_DOCUMENTS_JSON_H

#include <string>

#include "legal_document.h"

namespace lumenpress::legal {

class LegalDocumentsJson {
public:
  static std::string write(const LegalDocuments &documents);
  // Merges the records of `text` into `documents`; members of the wrong type keep their defaults,
  // and a root that is not an array adds nothing.
  static void read(const std::string &text, LegalDocuments *documents);
};

}  // namespace lumenpress::legal

#endif
