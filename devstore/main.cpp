// devstore: the local storefront. Stops cleanly on SIGINT and SIGTERM.
#include <QGuiApplication>

#include <csignal>
#include <cstdio>
#include <thread>

#include "options.h"
#include "store_server.h"

namespace {

// The server's threads must not take the stop stopSet; the main thread waits for them.
sigset_t stopSignals() {
  sigset_t stopSet;
  sigemptyset(&stopSet);
  sigaddset(&stopSet, SIGINT);
  sigaddset(&stopSet, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &stopSet, nullptr);
  return stopSet;
}

}  // namespace

int main(int argc, char **argv) {
  std::string error;
  const auto options = devstore::Options::parse(argc, argv, &error);
  if (!options) {
    std::fprintf(stderr, "devstore: %s\n%s", error.c_str(), devstore::Options::usage());
    return 2;
  }
  const sigset_t stopSet = stopSignals();
  // Covers are drawn with Qt's fonts, which need an application, though no display.
  qputenv("QT_QPA_PLATFORM", "minimal:enable_fonts");
  QGuiApplication app(argc, argv);

  devstore::StoreServer server(*options);
  if (!server.open(&error)) {
    std::fprintf(stderr, "devstore: %s\n", error.c_str());
    return 1;
  }
  std::thread serving([&server] { server.run(); });
  std::printf("devstore: listening on http://127.0.0.1:%d/\n", server.port());
  std::fflush(stdout);
  int received = 0;
  sigwait(&stopSet, &received);
  server.stop();
  serving.join();
  std::fprintf(stderr, "devstore: stopped\n");
  return 0;
}
