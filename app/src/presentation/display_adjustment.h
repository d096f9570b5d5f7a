// The device's display adjustment (brightness, contrast, gamma) applied to an image for a grey panel.
#ifndef LUMENPRESS_APP_DISPLAY_ADJUSTMENT_H
#define LUMENPRESS_APP_DISPLAY_ADJUSTMENT_H

#include <QImage>
#include <array>
#include <cstdint>

// Grey level to shown level, for percentages where 100 is neutral.
std::array<uint8_t, 256> displayAdjustmentTable(int brightness, int contrast, int gamma);

// Every pixel's red, green and blue through the table of the device's current setting, alpha opaque.
void applyDisplayAdjustment(QImage *image);

#endif
