#include "human_text.h"

#include "panelkit.h"

namespace lumenpress::utilities {

std::string HumanText(const std::string &key) {
  return GetLangText(key.c_str());
}

}  // namespace lumenpress::utilities
