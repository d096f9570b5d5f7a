#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string>

#include "config_file.h"
#include "device_path.h"
#include "lp_log.h"
#include "panelkit.h"

using lumenpress::platform::ConfigFile;

struct lpconfig {
  lpconfig(const std::string &path, bool is_writable) : file(path), writable(is_writable) {}

  ConfigFile file;
  const bool writable;
};

namespace {

bool parseInt(const std::string &text, int *out) {
  const char *begin = text.c_str();
  char *end = nullptr;
  errno = 0;
  const long long value = std::strtoll(begin, &end, 10);
  if (end == begin || errno == ERANGE || value < INT_MIN || value > INT_MAX) return false;
  while (*end == ' ' || *end == '\t') ++end;
  if (static_cast<std::size_t>(end - begin) != text.size()) return false;
  *out = static_cast<int>(value);
  return true;
}

bool mayWrite(lpconfig *cfg, const char *key) {
  if (!cfg || !key) return false;
  if (!cfg->writable) {
    LP_LOG(LP_LOG_WARNING, "write of \"%s\" refused: %s is open for reading", key, cfg->file.path().c_str());
    return false;
  }
  return true;
}

void reportRefusedKey(bool stored, lpconfig *cfg, const char *key) {
  if (!stored) LP_LOG(LP_LOG_WARNING, "key \"%s\" cannot be stored in %s", key, cfg->file.path().c_str());
}

}  // namespace

extern "C" {

lpconfig *OpenConfig(const char *path, int mode) {
  if (!path || (mode != 0 && mode != 1)) {
    LP_LOG(LP_LOG_ERROR, "OpenConfig(%s, %d): no path or unknown mode", path ? path : "(null)", mode);
    return nullptr;
  }
  auto cfg = std::make_unique<lpconfig>(lumenpress::platform::MapDevicePath(path), mode == 1);
  switch (cfg->file.load()) {
    case ConfigFile::LoadResult::kLoaded:
      return cfg.release();
    case ConfigFile::LoadResult::kMissing:
      return mode == 1 ? cfg.release() : nullptr;
    case ConfigFile::LoadResult::kFailed:
      break;
  }
  return nullptr;
}

int SaveConfig(lpconfig *cfg) {
  if (!cfg) return -1;
  if (!cfg->writable) {
    LP_LOG(LP_LOG_WARNING, "save refused: %s is open for reading", cfg->file.path().c_str());
    return -1;
  }
  return cfg->file.save() ? 0 : -1;
}

// A handle open for reading holds nothing to save, so closing it succeeds.
int CloseConfig(lpconfig *cfg) {
  if (!cfg) return -1;
  const int result = cfg->writable ? SaveConfig(cfg) : 0;
  delete cfg;
  return result;
}

void CloseConfigNoSave(lpconfig *cfg) {
  delete cfg;
}

const char *ReadString(lpconfig *cfg, const char *key, const char *deflt) {
  if (!cfg || !key) return deflt;
  const std::string *text = cfg->file.text(key);
  return text ? text->c_str() : deflt;
}

int ReadInt(lpconfig *cfg, const char *key, int deflt) {
  if (!cfg || !key) return deflt;
  const std::string *text = cfg->file.text(key);
  int value = 0;
  return text && parseInt(*text, &value) ? value : deflt;
}

const char *ReadSecret(lpconfig *cfg, const char *key, const char *deflt) {
  if (!cfg || !key) return deflt;
  const std::string *text = cfg->file.clearText(key);
  return text ? text->c_str() : deflt;
}

void WriteString(lpconfig *cfg, const char *key, const char *value) {
  if (!mayWrite(cfg, key) || !value) return;
  reportRefusedKey(cfg->file.setText(key, value), cfg, key);
}

void WriteInt(lpconfig *cfg, const char *key, int value) {
  if (!mayWrite(cfg, key)) return;
  reportRefusedKey(cfg->file.setText(key, std::to_string(value)), cfg, key);
}

void WriteSecret(lpconfig *cfg, const char *key, const char *value) {
  if (!mayWrite(cfg, key) || !value) return;
  reportRefusedKey(cfg->file.setSecret(key, value), cfg, key);
}

void DeleteConfigKey(lpconfig *cfg, const char *key) {
  if (mayWrite(cfg, key)) cfg->file.remove(key);
}

int GetConfigKeyCount(lpconfig *cfg) {
  return cfg ? static_cast<int>(cfg->file.keyCount()) : 0;
}

const char *GetConfigKey(lpconfig *cfg, int index) {
  if (!cfg || index < 0) return nullptr;
  const std::string *key = cfg->file.keyAt(static_cast<std::size_t>(index));
  return key ? key->c_str() : nullptr;
}

}  // extern "C"
