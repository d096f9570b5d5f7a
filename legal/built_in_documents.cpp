#include "built_in_documents.h"

#include <filesystem>
#include <string_view>

#include "cfg_wrapper.h"
#include "device_path.h"
#include "document_version.h"
#include "lp_log.h"
#include "panelkit.h"

namespace fs = std::filesystem;
using lumenpress::utilities::CfgWrapper;

namespace lumenpress::legal {

namespace {

struct BuiltIn {
  const char *name;
  const char *title;
};

constexpr BuiltIn kBuiltIns[] = {
    {"e-ink|EULA", "@EULA"},
    {"e-ink|PRIVACYNOTICE", "@PrivacyNotice"},
};

bool endsWith(const std::string &text, const std::string &end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

std::string BuiltInDocuments::fileStem(const std::string &name) {
  constexpr std::string_view kReplaced = "*!#$%&()@^`{}~'+.,;=[]?<:>|\"/";
  std::string stem = name;
  for (char &c : stem) {
    if (kReplaced.find(c) != std::string_view::npos) c = '_';
  }
  return stem;
}

std::string BuiltInDocuments::languageGroup(const std::string &language) {
  if (language == "be" || language == "gr") return "ru";
  if (language == "ru" || language == "uk" || language == "de" || language == "kk") return language;
  return "en";
}

std::vector<std::string> BuiltInDocuments::deviceSuffixes() {
  const CfgWrapper device("/coreapp/config/device.cfg", 0);
  std::vector<std::string> suffixes;
  if (device.read<int>("use_audio_player", 1) == 0) suffixes.push_back(".no-a");
  if (device.read<int>("wifi", 1) == 0) suffixes.push_back(".no-w");
  return suffixes;
}

// A file made for the device wins over the plain one; among equals the latest version.
bool BuiltInDocuments::pick(const std::string &prefix, const std::string &language, Candidate *chosen) {
  const std::string start = prefix + "_" + language + "_";
  const auto suffixes = deviceSuffixes();
  bool found = false;
  std::error_code error;
  for (const auto &entry : fs::directory_iterator(platform::MapDevicePath(kFolder), error)) {
    const std::string file = entry.path().filename().string();
    if (file.rfind(start, 0) != 0 || !endsWith(file, ".html")) continue;
    Candidate candidate{file, file.substr(start.size(), file.size() - start.size() - 5), false};
    for (const auto &suffix : suffixes) {
      if (endsWith(candidate.version, suffix)) {
        candidate.version.resize(candidate.version.size() - suffix.size());
        candidate.suffixed = true;
      }
    }
    if (!candidate.suffixed && candidate.version.find(".no-") != std::string::npos) continue;
    const bool better =
        !found || (candidate.suffixed && !chosen->suffixed) ||
        (candidate.suffixed == chosen->suffixed && DocumentVersion::less(chosen->version, candidate.version));
    if (better) *chosen = candidate;
    found = true;
  }
  return found;
}

void BuiltInDocuments::seed(LegalDocuments *documents) {
  const std::string language = languageGroup(currentLang());
  std::int64_t order = 0;
  for (const BuiltIn &built_in : kBuiltIns) {
    Candidate chosen;
    const std::string stem = fileStem(built_in.name);
    const bool found = pick(stem, language, &chosen) || pick(stem, "en", &chosen);
    ++order;
    if (!found) continue;
    if (chosen.suffixed)
      LP_LOG(LP_LOG_INFO, "********** LegalData selected suffixed document [%s]", chosen.file.c_str());
    else
      LP_LOG(LP_LOG_INFO, "********** LegalData selected default document [%s]", chosen.file.c_str());
    auto &versions = (*documents)[built_in.name];
    if (versions.count(chosen.version)) continue;
    LegalDocument &document = versions[chosen.version];
    document.name = built_in.name;
    document.version = chosen.version;
    document.title = built_in.title;
    document.url = std::string(kFolder) + "/" + chosen.file;
    document.sort_order = order;
    document.services = {"e-ink"};
  }
}

}  // namespace lumenpress::legal
