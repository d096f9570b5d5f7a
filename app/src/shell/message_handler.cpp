#include "message_handler.h"

#include "panelkit.h"

namespace {

int levelOf(QtMsgType type) {
  switch (type) {
    case QtDebugMsg:
      return 3;
    case QtWarningMsg:
      return 2;
    case QtCriticalMsg:
    case QtFatalMsg:
      return 1;
    default:
      return 3;
  }
}

}  // namespace

// The context is left alone: release builds of Qt leave it empty anyway.
void customMessageHandler(QtMsgType type, const QMessageLogContext &, const QString &message) {
  lp_print_log2(levelOf(type), "../../app/src/main.cpp", __LINE__, __PRETTY_FUNCTION__, "[pid:%d]%s", g_process_pid,
                message.toLocal8Bit().constData());
}
