#include "panel_canvas.h"

#include <algorithm>

#include "device_tree.h"
#include "png_writer.h"

namespace lumenpress::platform {

PanelCanvas &PanelCanvas::instance() {
  static PanelCanvas *canvas = new PanelCanvas();
  return *canvas;
}

PanelCanvas::PanelCanvas() : pixels_(static_cast<size_t>(kWidth) * kHeight, 0xff) {}

// The panel shows grey: colours count by their luminance.
std::uint8_t PanelCanvas::grey(int color) {
  const int red = (color >> 16) & 0xff;
  const int green = (color >> 8) & 0xff;
  const int blue = color & 0xff;
  return static_cast<std::uint8_t>((red * 299 + green * 587 + blue * 114) / 1000);
}

void PanelCanvas::fill(int x, int y, int width, int height, int color) {
  const int left = std::max(x, 0);
  const int right = std::min(x + std::max(width, 0), kWidth);
  const int top = std::max(y, 0);
  const int bottom = std::min(y + std::max(height, 0), kHeight);
  std::lock_guard<std::mutex> lock(mutex_);
  for (int row = top; row < bottom && left < right; ++row) {
    std::fill_n(&pixels_[static_cast<size_t>(row) * kWidth + left], right - left, grey(color));
  }
}

void PanelCanvas::draw(int x, int y, const lpbitmap &bitmap) {
  if (bitmap.pixels.size() != static_cast<size_t>(bitmap.width) * bitmap.height) return;
  const int left = std::max(x, 0);
  const int right = std::min(x + bitmap.width, kWidth);
  std::lock_guard<std::mutex> lock(mutex_);
  for (int row = std::max(y, 0); row < std::min(y + bitmap.height, kHeight) && left < right; ++row) {
    const auto *source = &bitmap.pixels[static_cast<size_t>(row - y) * bitmap.width + (left - x)];
    std::copy_n(source, right - left, &pixels_[static_cast<size_t>(row) * kWidth + left]);
  }
}

bool PanelCanvas::update() {
  std::lock_guard<std::mutex> lock(mutex_);
  return PngWriter::writeGrey(DeviceTree::instance().hostPath("panel.png"), kWidth, kHeight, pixels_);
}

}  // namespace lumenpress::platform
