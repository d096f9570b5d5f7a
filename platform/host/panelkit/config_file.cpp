#include "config_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>

#include "lp_log.h"
#include "secret_cipher.h"
#include "stale_file_sweeper.h"

namespace fs = std::filesystem;

namespace lumenpress::platform {

namespace {

// A plain value never starts with a lone backslash: its backslashes are written doubled.
// So these prefixes tell a secret apart from any plain text.
const char kSealedMarker[] = "\\e";
// Secrets written before they were enciphered: XORed with a key of the program's own. Still
// read, and enciphered anew when read, so the next save leaves none of them behind.
const char kScrambledMarker[] = "\\s";
const std::size_t kMarkerSize = 2;

const unsigned char kScrambleKey[] = {0x5a, 0xc3, 0x17, 0x8e, 0x2b, 0xf0, 0x64, 0x9d,
                                      0x31, 0xa8, 0x4e, 0xd7, 0x06, 0x7b, 0xe2, 0x99};

const char kByteOrderMark[] = "\xEF\xBB\xBF";

const char kBase64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string scramble(const std::string &data) {
  std::string out = data;
  for (std::size_t i = 0; i < out.size(); ++i)
    out[i] = static_cast<char>(out[i] ^ kScrambleKey[i % sizeof kScrambleKey]);
  return out;
}

std::string toBase64(const std::string &data) {
  std::string out;
  out.reserve((data.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < data.size(); i += 3) {
    uint32_t chunk = static_cast<unsigned char>(data[i]) << 16;
    if (i + 1 < data.size()) chunk |= static_cast<unsigned char>(data[i + 1]) << 8;
    if (i + 2 < data.size()) chunk |= static_cast<unsigned char>(data[i + 2]);
    out += kBase64[(chunk >> 18) & 63];
    out += kBase64[(chunk >> 12) & 63];
    out += i + 1 < data.size() ? kBase64[(chunk >> 6) & 63] : '=';
    out += i + 2 < data.size() ? kBase64[chunk & 63] : '=';
  }
  return out;
}

bool fromBase64(const std::string &text, std::string *out) {
  static const std::array<int8_t, 256> table = [] {
    std::array<int8_t, 256> values{};
    values.fill(-1);
    for (int i = 0; i < 64; ++i) values[static_cast<unsigned char>(kBase64[i])] = static_cast<int8_t>(i);
    return values;
  }();
  if (text.size() % 4 != 0) return false;
  out->clear();
  for (std::size_t i = 0; i < text.size(); i += 4) {
    const bool last = i + 4 == text.size();
    const int padding = last ? (text[i + 3] == '=') + (text[i + 2] == '=') : 0;
    if (padding == 1 && text[i + 2] == '=') return false;
    uint32_t chunk = 0;
    for (int j = 0; j < 4 - padding; ++j) {
      const int value = table[static_cast<unsigned char>(text[i + j])];
      if (value < 0) return false;
      chunk |= static_cast<uint32_t>(value) << (18 - 6 * j);
    }
    out->push_back(static_cast<char>(chunk >> 16));
    if (padding < 2) out->push_back(static_cast<char>(chunk >> 8));
    if (padding < 1) out->push_back(static_cast<char>(chunk));
  }
  return true;
}

std::string escape(const std::string &value) {
  std::string out;
  out.reserve(value.size());
  for (char c : value) {
    if (c == '\\')
      out += "\\\\";
    else if (c == '\n')
      out += "\\n";
    else if (c == '\r')
      out += "\\r";
    else
      out += c;
  }
  return out;
}

// Unknown escapes stay as written, so a hand-edited file loses nothing.
std::string unescape(const std::string &raw) {
  std::string out;
  out.reserve(raw.size());
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\\' || i + 1 == raw.size()) {
      out += raw[i];
      continue;
    }
    const char next = raw[++i];
    if (next == '\\')
      out += '\\';
    else if (next == 'n')
      out += '\n';
    else if (next == 'r')
      out += '\r';
    else
      out.append({'\\', next});
  }
  return out;
}

bool startsWith(const std::string &text, const char *prefix) {
  return text.compare(0, std::strlen(prefix), prefix) == 0;
}

bool sealedText(const std::string &key, const std::string &value, std::string *text) {
  std::string sealed;
  if (!SecretCipher::seal(key, value, &sealed)) return false;
  *text = kSealedMarker + toBase64(sealed);
  return true;
}

// The clear value of a secret in either stored form; false for one that is broken, changed,
// or enciphered with another device's key.
bool openSecret(const std::string &key, const std::string &raw, std::string *value) {
  std::string decoded;
  if (!fromBase64(raw.substr(kMarkerSize), &decoded)) return false;
  if (startsWith(raw, kScrambledMarker)) {
    *value = scramble(decoded);
    return true;
  }
  return SecretCipher::open(key, decoded, value);
}

bool validKey(const std::string &key) {
  return !key.empty() && key[0] != '#' && key.find_first_of("=\n\r") == std::string::npos;
}

// errno is left set on failure.
bool readWholeFile(const std::string &path, std::string *content) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  content->clear();
  char buffer[65536];
  for (;;) {
    const ssize_t got = ::read(fd, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      const int error = errno;
      ::close(fd);
      errno = error;
      return false;
    }
    if (got == 0) break;
    content->append(buffer, static_cast<std::size_t>(got));
  }
  ::close(fd);
  return true;
}

bool writeAll(int fd, const std::string &data) {
  const char *next = data.data();
  std::size_t left = data.size();
  while (left > 0) {
    const ssize_t written = ::write(fd, next, left);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    next += written;
    left -= static_cast<std::size_t>(written);
  }
  return true;
}

// A name no other save uses at the same time, in this process or another.
int createTemporary(const fs::path &target, std::string *temp_path) {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    const fs::path candidate = target.parent_path() / ("." + target.filename().string() + ".tmp." +
                                                       std::to_string(getpid()) + "." + std::to_string(counter++));
    const int fd = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd >= 0 || errno != EEXIST) {
      *temp_path = candidate.string();
      return fd;
    }
  }
  return -1;
}

// The names createTemporary gives, so that saves killed in an earlier run can be told.
StaleFileSweeper &temporarySweeper() {
  static StaleFileSweeper sweeper(R"(\..+\.tmp\.([0-9]+)\.[0-9]+)");
  return sweeper;
}

// The rename has happened; this only makes it survive a power cut.
void syncFolder(const fs::path &folder) {
  const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0 || ::fsync(fd) != 0)
    LP_LOG(LP_LOG_WARNING, "cannot sync folder %s: %s", folder.c_str(), std::strerror(errno));
  if (fd >= 0) ::close(fd);
}

}  // namespace

ConfigFile::ConfigFile(std::string path) : path_(std::move(path)) {}

ConfigFile::LoadResult ConfigFile::load() {
  entries_.clear();
  order_.clear();
  std::error_code error;
  temporarySweeper().sweepOnce(fs::absolute(path_, error).parent_path().string());
  std::string content;
  if (!readWholeFile(path_, &content)) {
    if (errno == ENOENT) return LoadResult::kMissing;
    LP_LOG(LP_LOG_WARNING, "cannot read %s: %s", path_.c_str(), std::strerror(errno));
    return LoadResult::kFailed;
  }
  if (startsWith(content, kByteOrderMark)) content.erase(0, 3);
  int malformed = 0;
  std::size_t start = 0;
  while (start < content.size()) {
    std::size_t end = content.find('\n', start);
    if (end == std::string::npos) end = content.size();
    if (!parseLine(content.substr(start, end - start))) ++malformed;
    start = end + 1;
  }
  if (malformed > 0) LP_LOG(LP_LOG_WARNING, "%d malformed lines ignored in %s", malformed, path_.c_str());
  return LoadResult::kLoaded;
}

bool ConfigFile::parseLine(const std::string &line) {
  std::string text = line;
  if (!text.empty() && text.back() == '\r') text.pop_back();
  if (text.find_first_not_of(" \t") == std::string::npos || text[0] == '#') return true;
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) return false;
  const std::string key = text.substr(0, equals);
  const std::string raw = text.substr(equals + 1);
  Entry entry;
  if (startsWith(raw, kSealedMarker) || startsWith(raw, kScrambledMarker)) {
    if (!openSecret(key, raw, &entry.secret)) return false;
    entry.is_secret = true;
    entry.text = raw;
    if (startsWith(raw, kScrambledMarker)) sealedText(key, entry.secret, &entry.text);
  } else {
    entry.text = unescape(raw);
  }
  put(key, std::move(entry));
  return true;
}

std::string ConfigFile::serialize() const {
  std::string out;
  for (const auto &it : order_) {
    const Entry &entry = it->second;
    out += it->first + "=" + (entry.is_secret ? entry.text : escape(entry.text)) + "\n";
  }
  // Load skips one byte order mark at the start. A first key that itself begins with U+FEFF
  // is therefore written after one such mark, which load takes away, leaving the key whole.
  if (startsWith(out, kByteOrderMark)) out.insert(0, kByteOrderMark);
  return out;
}

bool ConfigFile::save() const {
  std::error_code error;
  const fs::path target = fs::absolute(path_, error);
  if (!error && target.filename().empty()) error = std::make_error_code(std::errc::is_a_directory);
  if (!error) fs::create_directories(target.parent_path(), error);
  if (error) {
    LP_LOG(LP_LOG_ERROR, "cannot save %s: %s", path_.c_str(), error.message().c_str());
    return false;
  }
  std::string temp;
  const int fd = createTemporary(target, &temp);
  if (fd < 0) {
    LP_LOG(LP_LOG_ERROR, "cannot create a temporary file for %s: %s", path_.c_str(), std::strerror(errno));
    return false;
  }
  // The temporary file is the owner's alone. A file with secrets stays so, whatever mode it had;
  // any other keeps its mode.
  struct stat existing {};
  if (!holdsSecrets() && ::stat(target.c_str(), &existing) == 0) ::fchmod(fd, existing.st_mode & 07777);
  bool written = writeAll(fd, serialize()) && ::fsync(fd) == 0;
  written = ::close(fd) == 0 && written;
  if (!written || ::rename(temp.c_str(), target.c_str()) != 0) {
    LP_LOG(LP_LOG_ERROR, "cannot save %s: %s", path_.c_str(), std::strerror(errno));
    ::unlink(temp.c_str());
    return false;
  }
  syncFolder(target.parent_path());
  return true;
}

const std::string *ConfigFile::text(const std::string &key) const {
  const auto it = entries_.find(key);
  return it == entries_.end() ? nullptr : &it->second.text;
}

const std::string *ConfigFile::clearText(const std::string &key) const {
  const auto it = entries_.find(key);
  if (it == entries_.end()) return nullptr;
  return it->second.is_secret ? &it->second.secret : &it->second.text;
}

bool ConfigFile::setText(const std::string &key, const std::string &value) {
  if (!validKey(key)) return false;
  put(key, Entry{value, std::string(), false});
  return true;
}

bool ConfigFile::setSecret(const std::string &key, const std::string &value) {
  if (!validKey(key)) return false;
  std::string text;
  if (!sealedText(key, value, &text)) return false;
  put(key, Entry{text, value, true});
  return true;
}

void ConfigFile::remove(const std::string &key) {
  const auto it = entries_.find(key);
  if (it == entries_.end()) return;
  order_.erase(std::find(order_.begin(), order_.end(), it));
  entries_.erase(it);
}

bool ConfigFile::holdsSecrets() const {
  return std::any_of(entries_.begin(), entries_.end(), [](const auto &item) { return item.second.is_secret; });
}

const std::string *ConfigFile::keyAt(std::size_t index) const {
  return index < order_.size() ? &order_[index]->first : nullptr;
}

void ConfigFile::put(const std::string &key, Entry entry) {
  const auto [it, inserted] = entries_.insert_or_assign(key, std::move(entry));
  if (inserted) order_.push_back(it);
}

}  // namespace lumenpress::platform
