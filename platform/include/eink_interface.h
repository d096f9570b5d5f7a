// The e-ink panel as the Qt platform plugin offers it: refresh modes and device events.
#ifndef LUMENPRESS_EINK_INTERFACE_H
#define LUMENPRESS_EINK_INTERFACE_H

#include <functional>

namespace lumenpress::utilities {

// The plugin's platform object; operations in the order of its table.
class EinkPlatform {
public:
  virtual ~EinkPlatform() = default;
  // The panel keeps its picture until redraw is allowed again.
  virtual void blockRedraw(int mode) = 0;
  virtual void allowRedraw(int mode, int update) = 0;
  virtual void requestUpdate(int quality) = 0;
  // Device events (panel refresh, keyboard, restart) arrive on the main thread.
  virtual void setEventHandler(std::function<void(int)> handler) = 0;
  virtual void setQuickUpdate(bool quick) = 0;
  virtual void refreshPanel() = 0;
  virtual void enterApplicationMode(int mode) = 0;
};

class EinkInterface {
public:
  static EinkInterface *instance();
  // Exists once the application object does.
  EinkPlatform *platform();

private:
  EinkInterface() = default;
};

}  // namespace lumenpress::utilities

#endif
