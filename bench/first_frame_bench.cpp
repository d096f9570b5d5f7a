// The store's first home frame, with its feeds in the disk cache, against the first frame of an
// empty Qt Quick window: each in a fresh process, taken in turns, the median of several rounds;
// and the home frame once more with the catalogue library's results left to the 100 ms poll, as
// they were before the wake-up. Every window is this program run again as a child, which prints
// the monotonic time of the frame it waits for and ends at once.
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QFont>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "devstore_process.h"
#include "eink_interface.h"
#include "feed_provider.h"
#include "message_handler.h"
#include "panelkit.h"
#include "qt_platform.h"
#include "store_manager.h"

namespace {

constexpr int kRounds = 15;
constexpr int kChildTimeoutMs = 30000;
constexpr double kGoalMs = 100;

long long monotonicNs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000000000LL + now.tv_nsec;
}

void reportFrame() {
  std::printf("%lld\n", monotonicNs());
  std::fflush(stdout);
  _exit(0);
}

void collect(QQuickItem *item, const QString &name, QStringList *texts) {
  if (item->objectName() == name && item->isVisible()) *texts << item->property("text").toString();
  for (QQuickItem *child : item->childItems()) collect(child, name, texts);
}

// The home page with its rows of books, as the home screen's test knows it.
bool showsHome(QQuickWindow *window) {
  QStringList rows;
  QStringList books;
  collect(window->contentItem(), QStringLiteral("rowTitle"), &rows);
  collect(window->contentItem(), QStringLiteral("bookTitle"), &books);
  return rows.size() >= 2 && books.size() >= 8 && !books.contains(QString());
}

int showEmptyWindow(int argc, char **argv) {
  QGuiApplication app(argc, argv);
  QQmlApplicationEngine engine;
  engine.loadData(
      "import QtQuick 2.15\nimport QtQuick.Window 2.15\nWindow { visible: true; width: 758; height: 1024 }");
  auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
  if (!window) return 1;
  QObject::connect(window, &QQuickWindow::frameSwapped, window, reportFrame, Qt::DirectConnection);
  return QGuiApplication::exec();
}

// As the store's own main starts it.
int showHome(int argc, char **argv, bool wake) {
  setenv("QT_QPA_PLATFORM", lp_qt_platform_plugin(), 1);
  setenv("QSG_RENDER_LOOP", "threaded", 1);
  QGuiApplication app(argc, argv);
  if (auto *panel = lumenpress::utilities::EinkInterface::instance()->platform()) panel->enterApplicationMode(1);
  qInstallMessageHandler(customMessageHandler);
  const char *fontName = pk_get_default_font(5);
  QGuiApplication::setFont(QFont(QString::fromUtf8(fontName, fontName ? -1 : 0), -1, -1, false));
  StoreManager manager(nullptr);
  if (!wake) FeedProvider::Instance().dataManager().SetResultsWaitingHandler(nullptr);
  if (manager.Init(argc, argv) != 0) return 1;
  auto *window = qobject_cast<QQuickWindow *>(QGuiApplication::topLevelWindows().value(0));
  if (!window) return 1;
  // Both run on the render thread; the items are read while the main thread waits for the sync.
  std::atomic<bool> homeSynced{false};
  QObject::connect(
      window, &QQuickWindow::afterSynchronizing, window,
      [&] {
        if (!homeSynced && showsHome(window)) homeSynced = true;
      },
      Qt::DirectConnection);
  QObject::connect(
      window, &QQuickWindow::frameSwapped, window,
      [&] {
        if (homeSynced) reportFrame();
      },
      Qt::DirectConnection);
  return QGuiApplication::exec();
}

// Milliseconds from starting the child to the frame it reports; negative when it reports none.
double runChild(const char *mode) {
  int out[2];
  if (pipe(out) != 0) return -1;
  const long long started = monotonicNs();
  const pid_t pid = fork();
  if (pid == 0) {
    dup2(out[1], STDOUT_FILENO);
    const int quiet = open("/dev/null", O_WRONLY);
    dup2(quiet, STDERR_FILENO);
    close(out[0]);
    close(out[1]);
    execl("/proc/self/exe", "first_frame_bench", mode, static_cast<char *>(nullptr));
    _exit(127);
  }
  close(out[1]);
  std::string line;
  pollfd waiting{out[0], POLLIN, 0};
  char buffer[64];
  ssize_t n = 0;
  while (line.find('\n') == std::string::npos && poll(&waiting, 1, kChildTimeoutMs) > 0 &&
         (n = read(out[0], buffer, sizeof buffer)) > 0) {
    line.append(buffer, static_cast<size_t>(n));
  }
  close(out[0]);
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
  if (line.empty()) return -1;
  return static_cast<double>(std::atoll(line.c_str()) - started) / 1e6;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char **argv) {
  if (argc > 1 && std::strcmp(argv[1], "--empty") == 0) return showEmptyWindow(argc, argv);
  if (argc > 1 && std::strcmp(argv[1], "--home") == 0) return showHome(argc, argv, true);
  if (argc > 1 && std::strcmp(argv[1], "--home-polled") == 0) return showHome(argc, argv, false);

  char root[] = "/tmp/lp-first-frame-XXXXXX";
  if (!mkdtemp(root)) return 1;
  setenv("LUMENPRESS_DEVICE_ROOT", root, 1);
  if (!std::getenv("DISPLAY")) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("QT_QUICK_BACKEND", "software", 1);
  }
  setenv("QSG_RENDER_LOOP", "threaded", 1);
  lumenpress::testing::DevstoreProcess store(std::string(root) + "/devstore");
  if (!store.running()) {
    std::fprintf(stderr, "devstore did not start\n");
    return 1;
  }
  lpconfig *config = OpenConfig("/mnt/ext1/system/config/bookstore.cfg", 1);
  WriteString(config, "default_store", store.url("/de_de/").c_str());
  CloseConfig(config);

  // The first run fills the disk cache.
  if (runChild("--home") < 0) {
    std::fprintf(stderr, "the store showed no home page\n");
    return 1;
  }
  std::vector<double> empty;
  std::vector<double> home;
  std::vector<double> polled;
  for (int round = 0; round < kRounds; ++round) {
    empty.push_back(runChild("--empty"));
    home.push_back(runChild("--home"));
    polled.push_back(runChild("--home-polled"));
  }
  const double emptyMs = median(empty);
  const double homeMs = median(home);
  std::printf("first frame, median of %d fresh processes each:\n", kRounds);
  std::printf("  empty Qt Quick window                     %7.1f ms\n", emptyMs);
  std::printf("  home page from disk cache                 %7.1f ms\n", homeMs);
  std::printf("  home page, results left to the 100 ms poll %6.1f ms\n", median(polled));
  std::printf("  home page after the empty window          %7.1f ms   goal < %.0f ms: %s\n", homeMs - emptyMs, kGoalMs,
              homeMs - emptyMs < kGoalMs ? "met" : "NOT MET");
  store.stop();
  std::filesystem::remove_all(root);
  return 0;
}
