// A folder of files kept by key (a URL), whose eviction the device decides.
#ifndef LUMENPRESS_FILE_CACHE_H
#define LUMENPRESS_FILE_CACHE_H

#include <memory>
#include <string>

namespace lumenpress::utilities {

class FileCache {
public:
  // Keeps a cached file from eviction while held.
  class Handle;

  FileCache(const std::string &directory, const std::string &name);

  // Device path of the cached file, or an empty string; its size in *size (0 when missing).
  // A hit counts as a use for eviction.
  std::string getFile(const std::string &key, long long *size);
  // Copies (or, without copy, moves) the source in, replacing what the key held;
  // null when that fails.
  std::shared_ptr<Handle> addFile(const std::string &key, const std::string &source_path, bool copy);
  void removeFile(const std::string &key);

private:
  // The lock, the size counted so far and the files that handles hold; handles share it,
  // so they may outlive the cache.
  struct State;

  std::string directory_;
  std::string name_;
  std::shared_ptr<State> state_;
};

}  // namespace lumenpress::utilities

#endif
