#include "event_wait.h"

#include <QCoreApplication>

#include <chrono>
#include <thread>

namespace lumenpress::testing {

bool waitUntil(const std::function<bool()> &done) {
  for (int i = 0; i < 1500 && !done(); ++i) {
    QCoreApplication::processEvents();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return done();
}

}  // namespace lumenpress::testing
