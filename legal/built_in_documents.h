// The EULA and privacy notice the device carries under "/coreapp/license", one file per
// document, language and version, some made for devices without audio (".no-a") or without
// wireless network (".no-w"): "e-ink_EULA_en_1.0.html", "e-ink_EULA_en_1.0.no-a.html".
#ifndef LUMENPRESS_LEGAL_BUILT_IN_DOCUMENTS_H
#define LUMENPRESS_LEGAL_BUILT_IN_DOCUMENTS_H

#include <string>
#include <vector>

#include "legal_document.h"

namespace lumenpress::legal {

class BuiltInDocuments {
public:
  static constexpr const char *kFolder = "/coreapp/license";

  // Adds the device's documents in the user's language, each version only when it is missing.
  static void seed(LegalDocuments *documents);
  // The language a document is written in for the user's language.
  static std::string languageGroup(const std::string &language);
  // The suffixes made for this device, the most fitting first.
  static std::vector<std::string> deviceSuffixes();
  // A document name as it begins a file name: "e-ink|EULA" is "e-ink_EULA".
  static std::string fileStem(const std::string &name);

private:
  struct Candidate {
    std::string file;
    std::string version;
    bool suffixed = false;
  };
  static bool pick(const std::string &prefix, const std::string &language, Candidate *chosen);
};

}  // namespace lumenpress::legal

#endif
