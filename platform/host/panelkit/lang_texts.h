// The device's language texts: "@" keys looked up in the language files of the
// language that global.cfg names, with English and the bare key as fallbacks.
#ifndef LUMENPRESS_HOST_LANG_TEXTS_H
#define LUMENPRESS_HOST_LANG_TEXTS_H

#include <sys/types.h>

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace lumenpress::platform {

class LangTexts {
public:
  static LangTexts &instance();

  // Texts handed out stay valid for the life of the process.
  const char *text(const char *key);
  const char *plural(const char *key, int count);
  const char *language();

private:
  using Table = std::map<std::string, std::string>;

  LangTexts() = default;
  const std::string &currentLanguageLocked();
  const Table &tableLocked(const std::string &language);
  const std::string *findLocked(const std::string &key);
  const char *fallbackLocked(const std::string &key);

  std::mutex mutex_;
  std::string config_stamp_;
  std::set<std::string> languages_;
  const std::string *language_ = nullptr;
  std::map<std::string, std::unique_ptr<Table>> tables_;
  std::set<std::string> fallbacks_;
};

}  // namespace lumenpress::platform

#endif
