#include "lang_texts.h"

#include <sys/stat.h>

#include <fstream>

#include "device_path.h"
#include "panelkit.h"

namespace lumenpress::platform {

namespace {

const char kGlobalConfig[] = "/mnt/ext1/system/config/global.cfg";

bool isKey(const char *text) {
  return text && text[0] == '@';
}

// Identifies one version of global.cfg, so that the language is read again only when it changed.
std::string stamp(const std::string &path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return path;
  return path + ":" + std::to_string(info.st_mtim.tv_sec) + "." + std::to_string(info.st_mtim.tv_nsec) + ":" +
         std::to_string(info.st_size);
}

std::string unescape(const std::string &raw) {
  std::string out;
  for (size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] == '\\' && i + 1 < raw.size() && raw[i + 1] == 'n') {
      out += '\n';
      ++i;
    } else {
      out += raw[i];
    }
  }
  return out;
}

}  // namespace

LangTexts &LangTexts::instance() {
  static LangTexts texts;
  return texts;
}

const std::string &LangTexts::currentLanguageLocked() {
  const std::string config = MapDevicePath(kGlobalConfig);
  const std::string current = stamp(config);
  if (!language_ || current != config_stamp_) {
    std::string language = "en";
    if (lpconfig *cfg = OpenConfig(kGlobalConfig, 0)) {
      const char *value = ReadString(cfg, "language", "en");
      if (value && *value) language = value;
      CloseConfigNoSave(cfg);
    }
    language_ = &*languages_.insert(language).first;
    config_stamp_ = current;
  }
  return *language_;
}

const LangTexts::Table &LangTexts::tableLocked(const std::string &language) {
  const std::string path = MapDevicePath("/coreapp/lang/" + language + ".txt");
  auto &table = tables_[path];
  if (table) return *table;
  table = std::make_unique<Table>();
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const auto equals = line.find('=');
    if (line.empty() || line[0] != '@' || equals == std::string::npos) continue;
    (*table)[line.substr(0, equals)] = unescape(line.substr(equals + 1));
  }
  return *table;
}

const std::string *LangTexts::findLocked(const std::string &key) {
  for (const std::string &language : {currentLanguageLocked(), std::string("en")}) {
    const Table &table = tableLocked(language);
    const auto found = table.find(key);
    if (found != table.end()) return &found->second;
  }
  return nullptr;
}

const char *LangTexts::fallbackLocked(const std::string &key) {
  const size_t skip = key.compare(0, 2, "@$") == 0 ? 2 : 1;
  return fallbacks_.insert(key.substr(skip)).first->c_str();
}

const char *LangTexts::text(const char *key) {
  if (!isKey(key)) return key;
  std::lock_guard<std::mutex> lock(mutex_);
  const std::string *found = findLocked(key);
  return found ? found->c_str() : fallbackLocked(key);
}

const char *LangTexts::plural(const char *key, int count) {
  if (!isKey(key)) return key;
  std::lock_guard<std::mutex> lock(mutex_);
  const std::string *found = findLocked(std::string(key) + (count == 1 ? "[one]" : "[other]"));
  if (!found) found = findLocked(key);
  return found ? found->c_str() : fallbackLocked(key);
}

const char *LangTexts::language() {
  std::lock_guard<std::mutex> lock(mutex_);
  return currentLanguageLocked().c_str();
}

}  // namespace lumenpress::platform

using lumenpress::platform::LangTexts;

extern "C" const char *GetLangText(const char *key) {
  return LangTexts::instance().text(key);
}

extern "C" const char *GetLangTextPlural(const char *key, int count) {
  return LangTexts::instance().plural(key, count);
}

extern "C" const char *currentLang(void) {
  return LangTexts::instance().language();
}
