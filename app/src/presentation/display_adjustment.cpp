#include "display_adjustment.h"

#include <cmath>

#include "panelkit_draw.h"

namespace {

// Truncated toward zero and kept within a byte; settings from a file may lead anywhere, NaN included.
int clampToByte(double value) {
  if (!(value > 0)) return 0;
  return value >= 255 ? 255 : static_cast<int>(value);
}

}  // namespace

std::array<uint8_t, 256> displayAdjustmentTable(int brightness, int contrast, int gamma) {
  std::array<uint8_t, 256> table{};
  for (int i = 0; i < 256; ++i) {
    const int shifted = clampToByte((brightness / 100.0 - 1) * 255 + i) - 127;
    const int stretched = clampToByte((contrast / 100.0) * shifted + 127);
    table[i] = static_cast<uint8_t>(clampToByte(std::pow(stretched / 255.0, gamma / 100.0) * 255));
  }
  return table;
}

void applyDisplayAdjustment(QImage *image) {
  int brightness = 100;
  int contrast = 100;
  int gamma = 100;
  getBrightnessContrastGammaAdjustParams(&brightness, &contrast, &gamma);
  const auto table = displayAdjustmentTable(brightness, contrast, gamma);
  for (int y = 0; y < image->height(); ++y) {
    for (int x = 0; x < image->width(); ++x) {
      const QRgb pixel = image->pixel(x, y);
      image->setPixel(x, y, qRgba(table[qRed(pixel)], table[qGreen(pixel)], table[qBlue(pixel)], 255));
    }
  }
}
