#include "language_codes.h"

#include <QLocale>
#include <QString>

#include <algorithm>
#include <cctype>
#include <map>

namespace lumenpress::utilities {

namespace {

// Three-letter codes (bibliographic and terminological forms) of the languages that have a
// two-letter one, for the languages a catalogue is likely to carry.
const std::map<std::string, std::string> &twoLetterCodes() {
  static const std::map<std::string, std::string> codes = {
      {"ara", "ar"}, {"bel", "be"}, {"bul", "bg"}, {"cat", "ca"}, {"ces", "cs"}, {"cze", "cs"}, {"chi", "zh"},
      {"zho", "zh"}, {"dan", "da"}, {"deu", "de"}, {"ger", "de"}, {"ell", "el"}, {"gre", "el"}, {"eng", "en"},
      {"spa", "es"}, {"est", "et"}, {"fin", "fi"}, {"fra", "fr"}, {"fre", "fr"}, {"heb", "he"}, {"hrv", "hr"},
      {"hun", "hu"}, {"ita", "it"}, {"jpn", "ja"}, {"kaz", "kk"}, {"kor", "ko"}, {"lit", "lt"}, {"lav", "lv"},
      {"nld", "nl"}, {"dut", "nl"}, {"nor", "no"}, {"nob", "nb"}, {"pol", "pl"}, {"por", "pt"}, {"ron", "ro"},
      {"rum", "ro"}, {"rus", "ru"}, {"slk", "sk"}, {"slo", "sk"}, {"slv", "sl"}, {"srp", "sr"}, {"swe", "sv"},
      {"tur", "tr"}, {"ukr", "uk"}, {"vie", "vi"}};
  return codes;
}

}  // namespace

std::string LanguageCodes::FindCode(const std::string &code) {
  std::string lower = code;
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
  const auto three = twoLetterCodes().find(lower);
  const std::string two = three != twoLetterCodes().end() ? three->second : lower.substr(0, lower.find_first_of("-_"));
  if (two.size() != 2) return code;
  const QLocale locale(QString::fromStdString(two));
  if (locale.language() == QLocale::C) return code;
  return QLocale::languageToString(locale.language()).toStdString();
}

}  // namespace lumenpress::utilities
