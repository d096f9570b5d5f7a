// A PC shows the store in a desktop window, or without a display offscreen; Qt Quick has no
// OpenGL offscreen and draws in software there.
#include "qt_platform.h"

#include <cstdlib>

extern "C" const char *lp_qt_platform_plugin(void) {
  const char *display = std::getenv("DISPLAY");
  const char *wayland = std::getenv("WAYLAND_DISPLAY");
  if ((display && *display) || (wayland && *wayland)) return display && *display ? "xcb" : "wayland";
  setenv("QT_QUICK_BACKEND", "software", 0);
  return "offscreen";
}
