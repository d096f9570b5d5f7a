#include "unix_time.h"

#include <ctime>

namespace devstore {

long long UnixTime::now() {
  return static_cast<long long>(std::time(nullptr));
}

}  // namespace devstore
