#include "opds/last_search.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <mutex>

#include "device_path.h"

namespace lumenpress::opds {

namespace {

constexpr size_t kMostTerms = 20;

std::mutex &fileMutex() {
  static std::mutex mutex;
  return mutex;
}

std::string trimmed(const std::string &text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::vector<std::string> readTerms(const std::string &path) {
  std::vector<std::string> terms;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line) && terms.size() < kMostTerms;) {
    line = trimmed(line);
    if (!line.empty() && std::find(terms.begin(), terms.end(), line) == terms.end()) terms.push_back(line);
  }
  return terms;
}

void writeTerms(const std::string &path, const std::vector<std::string> &terms) {
  const std::string temp = path + ".tmp." + std::to_string(getpid());
  {
    std::ofstream out(temp, std::ios::trunc);
    for (const auto &term : terms) out << term << '\n';
    if (!out.flush()) {
      std::remove(temp.c_str());
      return;
    }
  }
  if (std::rename(temp.c_str(), path.c_str()) != 0) std::remove(temp.c_str());
}

}  // namespace

LastSearch &LastSearch::Instance() {
  static LastSearch last_search;
  return last_search;
}

std::vector<std::string> LastSearch::GetLastSearch() {
  std::lock_guard<std::mutex> lock(fileMutex());
  return readTerms(platform::MapDevicePath(file_path));
}

void LastSearch::AddLastSearch(const std::string &term) {
  std::string line = trimmed(term);
  std::replace(line.begin(), line.end(), '\n', ' ');
  if (line.empty()) return;
  std::lock_guard<std::mutex> lock(fileMutex());
  const std::string path = platform::MapDevicePath(file_path);
  std::vector<std::string> terms = readTerms(path);
  terms.erase(std::remove(terms.begin(), terms.end(), line), terms.end());
  terms.insert(terms.begin(), line);
  if (terms.size() > kMostTerms) terms.resize(kMostTerms);
  writeTerms(path, terms);
}

}  // namespace lumenpress::opds
