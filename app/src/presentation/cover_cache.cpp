#include "cover_cache.h"

lumenpress::utilities::FileCache &coverCache() {
  static lumenpress::utilities::FileCache cache("/mnt/ext1/system/cache/bookstore_covers_cache",
                                                "bookstore_covers_cache");
  return cache;
}

std::string coverFilePath(const std::string &url) {
  long long size = 0;
  return coverCache().getFile(url, &size);
}
