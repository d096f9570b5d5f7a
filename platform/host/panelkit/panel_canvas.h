// The panel of a PC device: a grey picture that direct drawing changes, shown as a PNG file
// under the device root each time the program asks for an update.
#ifndef LUMENPRESS_HOST_PANEL_CANVAS_H
#define LUMENPRESS_HOST_PANEL_CANVAS_H

#include <cstdint>
#include <mutex>
#include <vector>

#include "host_bitmap.h"

namespace lumenpress::platform {

class PanelCanvas {
public:
  // The size of the store's own window, so that the splash sits where the screens will be.
  static constexpr int kWidth = 758;
  static constexpr int kHeight = 1024;
  // The host's shell shows no panel of its own below the application.
  static constexpr int kPanelHeight = 0;

  static PanelCanvas &instance();

  // Drawing outside the panel is cut off.
  void fill(int x, int y, int width, int height, int color);
  void draw(int x, int y, const lpbitmap &bitmap);
  // Writes the picture to "panel.png" in the host folder.
  bool update();

private:
  PanelCanvas();
  static std::uint8_t grey(int color);

  std::mutex mutex_;
  std::vector<std::uint8_t> pixels_;
};

}  // namespace lumenpress::platform

#endif
