// The store's clock: seconds since the epoch, as its tables keep times.
#ifndef DEVSTORE_UNIX_TIME_H
#define DEVSTORE_UNIX_TIME_H

namespace devstore {

class UnixTime {
public:
  static long long now();
};

}  // namespace devstore

#endif
