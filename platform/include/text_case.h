// Case of UTF-8 texts, letters beyond ASCII included.
#ifndef LUMENPRESS_TEXT_CASE_H
#define LUMENPRESS_TEXT_CASE_H

#include <string>

namespace lumenpress::utilities {

std::string ToUpper(const std::string &text);

}  // namespace lumenpress::utilities

#endif
