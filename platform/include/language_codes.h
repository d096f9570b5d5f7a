// Names of languages by their ISO 639 codes.
#ifndef LUMENPRESS_LANGUAGE_CODES_H
#define LUMENPRESS_LANGUAGE_CODES_H

#include <string>

namespace lumenpress::utilities {

class LanguageCodes {
public:
  // The language's English name for a two- or three-letter code ("de", "deu", "ger"); the code as
  // given when it names no language known here.
  static std::string FindCode(const std::string &code);
};

}  // namespace lumenpress::utilities

#endif
