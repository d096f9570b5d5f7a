#include "document_version.h"

#include <cctype>
#include <sstream>
#include <vector>

namespace lumenpress::legal {

namespace {

std::vector<std::string> parts(const std::string &version) {
  std::vector<std::string> out;
  std::stringstream stream(version);
  std::string part;
  while (std::getline(stream, part, '.')) out.push_back(part);
  return out;
}

bool numeric(const std::string &part) {
  if (part.empty() || part.size() > 18) return false;
  for (unsigned char c : part) {
    if (!std::isdigit(c)) return false;
  }
  return true;
}

}  // namespace

bool DocumentVersion::less(const std::string &a, const std::string &b) {
  const auto left = parts(a);
  const auto right = parts(b);
  for (size_t i = 0; i < left.size() && i < right.size(); ++i) {
    if (left[i] == right[i]) continue;
    if (numeric(left[i]) && numeric(right[i])) return std::stoll(left[i]) < std::stoll(right[i]);
    return left[i] < right[i];
  }
  return left.size() < right.size();
}

}  // namespace lumenpress::legal
