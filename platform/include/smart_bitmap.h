// A device bitmap that frees itself: a named resource, or an image made in memory.
#ifndef LUMENPRESS_SMART_BITMAP_H
#define LUMENPRESS_SMART_BITMAP_H

#include <memory>
#include <string>

#include "panelkit.h"

namespace lumenpress::utilities {

class SmartBitmap {
public:
  SmartBitmap();
  // The device's bitmap resource of that name, inverted when asked.
  explicit SmartBitmap(const std::string &name, bool invert = false);

  bool empty() const;
  int width() const;
  int height() const;
  const lpbitmap *get() const;
  bool SaveBMP(const std::string &path) const;

private:
  std::shared_ptr<lpbitmap> bitmap_;
};

}  // namespace lumenpress::utilities

#endif
