// The panel's platform object on a PC: a desktop window needs no refresh modes, so each
// call is only journalled; with LUMENPRESS_SCREENSHOT set, the window is also written to
// that PNG file whenever it has settled, and every few seconds while it keeps changing (a
// blinking text cursor never lets it settle).
#ifndef LUMENPRESS_HOST_EINK_PLATFORM_H
#define LUMENPRESS_HOST_EINK_PLATFORM_H

#include <QObject>
#include <QTimer>

#include <functional>
#include <string>

#include "eink_interface.h"

namespace lumenpress::platform {

class HostEinkPlatform : public QObject, public utilities::EinkPlatform {
  Q_OBJECT

public:
  void blockRedraw(int mode) override;
  void allowRedraw(int mode, int update) override;
  void requestUpdate(int quality) override;
  void setEventHandler(std::function<void(int)> handler) override;
  void setQuickUpdate(bool quick) override;
  void refreshPanel() override;
  void enterApplicationMode(int mode) override;

private:
  void watchWindows();
  void frameDrawn();
  void writeScreenshot();

  std::function<void(int)> event_handler_;
  QTimer settled_;
  QTimer changing_;
  std::string screenshot_;
};

}  // namespace lumenpress::platform

#endif
