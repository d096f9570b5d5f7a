// kiosk-2.app: prepares the process and hands everything to one StoreManager.
#include <QFont>
#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "eink_interface.h"
#include "human_text.h"
#include "lp_log.h"
#include "message_handler.h"
#include "panelkit.h"
#include "qt_platform.h"
#include "store_manager.h"

int main(int argc, char **argv) {
  timespec start{};
  clock_gettime(CLOCK_MONOTONIC, &start);
  QCoreApplication::setSetuidAllowed(true);
  setenv("QT_QPA_PLATFORM", lp_qt_platform_plugin(), 1);
  setenv("QSG_RENDER_LOOP", "threaded", 1);
  QGuiApplication app(argc, argv);
  if (auto *panel = lumenpress::utilities::EinkInterface::instance()->platform()) panel->enterApplicationMode(1);
  qInstallMessageHandler(customMessageHandler);
  LP_LOG(LP_LOG_INFO, "Starting kiosk-2");

  const std::string title = lumenpress::utilities::HumanText("@$UniversalStore");
  SetTaskParameters(GetCurrentTask(), nullptr, title.c_str(), GetResource("bookstore", nullptr), -1);
  const char *fontName = pk_get_default_font(5);
  const QFont font(QString::fromUtf8(fontName, fontName ? -1 : 0), -1, -1, false);
  QGuiApplication::setFont(font);

  StoreManager manager(nullptr);
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  std::fprintf(stderr, "\n\n\n\n+++++++++++++++ Starting app takes %6.6f\n\n\n\n",
               static_cast<double>(now.tv_sec - start.tv_sec) + (now.tv_nsec - start.tv_nsec) / 1000000000.0);
  const int initialised = manager.Init(argc, argv);
  return initialised == 0 ? QGuiApplication::exec() : initialised;
}
