// Fetches covers for the device's own library views.
#ifndef LUMENPRESS_COVER_LOADER_H
#define LUMENPRESS_COVER_LOADER_H

namespace lumenpress::utilities {

class CoverLoader {
public:
  CoverLoader();
  ~CoverLoader();
  CoverLoader(const CoverLoader &) = delete;
  CoverLoader &operator=(const CoverLoader &) = delete;
};

}  // namespace lumenpress::utilities

#endif
