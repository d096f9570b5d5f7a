// One keyed configuration file in memory: "key=value" lines of UTF-8 text, with secrets
// enciphered beside plain values, and a save that never leaves half a file.
#ifndef LUMENPRESS_HOST_CONFIG_FILE_H
#define LUMENPRESS_HOST_CONFIG_FILE_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace lumenpress::platform {

class ConfigFile {
public:
  enum class LoadResult { kLoaded, kMissing, kFailed };

  explicit ConfigFile(std::string path);
  ConfigFile(const ConfigFile &) = delete;
  ConfigFile &operator=(const ConfigFile &) = delete;

  const std::string &path() const { return path_; }

  // Replaces the keys in memory by the file's; kMissing leaves them empty. The first load in a
  // folder also removes the temporary files that killed saves left there.
  LoadResult load();
  // Writes a temporary file beside the target and renames it over the target.
  bool save() const;

  // Pointers stay valid until the key is set or removed, or the object is destroyed.
  // The stored text: a plain value, or a secret in its protected form.
  const std::string *text(const std::string &key) const;
  // The clear value: a plain value as it is, a secret decoded.
  const std::string *clearText(const std::string &key) const;

  // False, with nothing changed, for a key the format cannot hold (or a secret that cannot be
  // enciphered).
  bool setText(const std::string &key, const std::string &value);
  bool setSecret(const std::string &key, const std::string &value);
  void remove(const std::string &key);

  std::size_t keyCount() const { return order_.size(); }
  // Keys in the order of the file, new ones last; null past the end.
  const std::string *keyAt(std::size_t index) const;

private:
  struct Entry {
    std::string text;
    std::string secret;
    bool is_secret = false;
  };
  using Entries = std::map<std::string, Entry>;

  bool parseLine(const std::string &line);
  void put(const std::string &key, Entry entry);
  std::string serialize() const;
  bool holdsSecrets() const;

  std::string path_;
  Entries entries_;
  std::vector<Entries::iterator> order_;
};

}  // namespace lumenpress::platform

#endif
