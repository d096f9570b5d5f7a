#include "text_case.h"

#include <QString>

namespace lumenpress::utilities {

std::string ToUpper(const std::string &text) {
  return QString::fromStdString(text).toUpper().toStdString();
}

}  // namespace lumenpress::utilities
