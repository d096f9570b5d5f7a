#include "smart_bitmap.h"

#include <QImage>

#include <cstring>

#include "device_path.h"
#include "host_bitmap.h"
#include "lp_log.h"

namespace lumenpress::utilities {

namespace {

// The device's bitmap resources lie as PNG files among its core files.
std::string resourcePath(const std::string &name) {
  return platform::MapDevicePath("/coreapp/resources/" + name + ".png");
}

}  // namespace

SmartBitmap::SmartBitmap() = default;

SmartBitmap::SmartBitmap(const std::string &name, bool invert) {
  QImage image(QString::fromStdString(resourcePath(name)));
  if (image.isNull()) {
    LP_LOG(LP_LOG_WARNING, "no bitmap resource \"%s\"", name.c_str());
    return;
  }
  image = image.convertToFormat(QImage::Format_Grayscale8);
  if (invert) image.invertPixels();
  auto bitmap = std::make_shared<lpbitmap>();
  bitmap->name = name;
  bitmap->width = image.width();
  bitmap->height = image.height();
  bitmap->pixels.resize(static_cast<size_t>(image.width()) * image.height());
  for (int row = 0; row < image.height(); ++row) {
    std::memcpy(&bitmap->pixels[static_cast<size_t>(row) * image.width()], image.constScanLine(row), image.width());
  }
  bitmap_ = std::move(bitmap);
}

bool SmartBitmap::empty() const {
  return !bitmap_;
}

int SmartBitmap::width() const {
  return bitmap_ ? bitmap_->width : 0;
}

int SmartBitmap::height() const {
  return bitmap_ ? bitmap_->height : 0;
}

const lpbitmap *SmartBitmap::get() const {
  return bitmap_.get();
}

bool SmartBitmap::SaveBMP(const std::string &path) const {
  if (!bitmap_) return false;
  const QImage image(bitmap_->pixels.data(), bitmap_->width, bitmap_->height, bitmap_->width,
                     QImage::Format_Grayscale8);
  return image.save(QString::fromStdString(platform::MapDevicePath(path)), "BMP");
}

}  // namespace lumenpress::utilities
