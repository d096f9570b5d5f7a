// Orders version texts such as "1.10" after "1.9": dotted numbers compare as numbers, any
// other parts as text.
#ifndef LUMENPRESS_LEGAL_DOCUMENT_VERSION_H
#define LUMENPRESS_LEGAL_DOCUMENT_VERSION_H

#include <string>

namespace lumenpress::legal {

class DocumentVersion {
public:
  static bool less(const std::string &a, const std::string &b);
};

}  // namespace lumenpress::legal

#endif
