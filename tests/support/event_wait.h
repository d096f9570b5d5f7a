// Runs the Qt event loop of a test until a condition holds.
#ifndef LUMENPRESS_TESTS_EVENT_WAIT_H
#define LUMENPRESS_TESTS_EVENT_WAIT_H

#include <functional>

namespace lumenpress::testing {

// False when `done` still fails after 15 seconds.
bool waitUntil(const std::function<bool()> &done);

}  // namespace lumenpress::testing

#endif
