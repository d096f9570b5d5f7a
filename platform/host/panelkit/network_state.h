// The device's network as a PC plays it: up, unless the switch file under the device root says down.
#ifndef LUMENPRESS_HOST_NETWORK_STATE_H
#define LUMENPRESS_HOST_NETWORK_STATE_H

namespace lumenpress::platform {

class NetworkState {
public:
  // Connection bits the device reports while a network stands.
  static constexpr int kConnectedBits = 0x103;

  static bool isUp();
};

}  // namespace lumenpress::platform

#endif
