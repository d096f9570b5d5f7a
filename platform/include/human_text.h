// Language texts for code that builds std::string titles.
#ifndef LUMENPRESS_HUMAN_TEXT_H
#define LUMENPRESS_HUMAN_TEXT_H

#include <string>

namespace lumenpress::utilities {

// The text of a "@" key in the device's language; other strings unchanged.
std::string HumanText(const std::string &key);

}  // namespace lumenpress::utilities

#endif
