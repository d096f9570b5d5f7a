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

  // Path of the cached file, or an empty string; its size in *size.
  std::string getFile(const std::string &key, long long *size);
  std::shared_ptr<Handle> addFile(const std::string &key, const std::string &source_path, bool copy);
  void removeFile(const std::string &key);

private:
  std::string directory_;
  std::string name_;
};

}  // namespace lumenpress::utilities

#endif
