#include "host_eink_platform.h"

#include <json/value.h>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>

#include <cstdlib>

#include "lp_log.h"
#include "task_journal.h"

namespace lumenpress::platform {

namespace {

// A window counts as settled when no frame has come for this long.
constexpr int kSettledMs = 1500;
// A window that keeps drawing is written at the latest after this long.
constexpr int kChangingMs = 3000;

void journal(const char *call, Json::Value members = Json::Value(Json::objectValue)) {
  TaskJournal::append(std::string("eink.") + call, std::move(members));
}

Json::Value values(std::initializer_list<std::pair<const char *, int>> pairs) {
  Json::Value members(Json::objectValue);
  for (const auto &[name, value] : pairs) members[name] = value;
  return members;
}

}  // namespace

void HostEinkPlatform::blockRedraw(int mode) {
  journal("blockRedraw", values({{"mode", mode}}));
}

void HostEinkPlatform::allowRedraw(int mode, int update) {
  journal("allowRedraw", values({{"mode", mode}, {"update", update}}));
}

void HostEinkPlatform::requestUpdate(int quality) {
  journal("requestUpdate", values({{"quality", quality}}));
}

void HostEinkPlatform::setEventHandler(std::function<void(int)> handler) {
  event_handler_ = std::move(handler);
}

void HostEinkPlatform::setQuickUpdate(bool quick) {
  journal("setQuickUpdate", values({{"quick", quick ? 1 : 0}}));
}

void HostEinkPlatform::refreshPanel() {
  journal("refreshPanel");
}

void HostEinkPlatform::enterApplicationMode(int mode) {
  journal("enterApplicationMode", values({{"mode", mode}}));
  const char *target = std::getenv("LUMENPRESS_SCREENSHOT");
  if (!target || !*target) return;
  screenshot_ = target;
  settled_.setSingleShot(true);
  settled_.setInterval(kSettledMs);
  connect(&settled_, &QTimer::timeout, this, &HostEinkPlatform::writeScreenshot);
  changing_.setSingleShot(true);
  changing_.setInterval(kChangingMs);
  connect(&changing_, &QTimer::timeout, this, &HostEinkPlatform::writeScreenshot);
  // Windows come later, when the program loads its screens.
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &HostEinkPlatform::watchWindows);
  QTimer::singleShot(0, this, &HostEinkPlatform::watchWindows);
}

void HostEinkPlatform::watchWindows() {
  for (QWindow *window : QGuiApplication::topLevelWindows()) {
    if (auto *quick = qobject_cast<QQuickWindow *>(window)) {
      connect(quick, &QQuickWindow::frameSwapped, this, &HostEinkPlatform::frameDrawn, Qt::UniqueConnection);
    }
  }
  settled_.start();
}

void HostEinkPlatform::frameDrawn() {
  settled_.start();
  if (!changing_.isActive()) changing_.start();
}

void HostEinkPlatform::writeScreenshot() {
  settled_.stop();
  changing_.stop();
  const auto windows = QGuiApplication::topLevelWindows();
  for (QWindow *window : windows) {
    if (!window->isVisible()) continue;
    // The offscreen platform's own grab gives an empty picture; the screen's has the pixels.
    const QPixmap picture = window->screen()->grabWindow(window->winId());
    if (picture.save(QString::fromStdString(screenshot_), "PNG")) {
      LP_LOG(LP_LOG_INFO, "screenshot written to %s", screenshot_.c_str());
    }
    return;
  }
}

}  // namespace lumenpress::platform
