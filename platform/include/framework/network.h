// The device's network manager, which switches the network off after a while unless told not to.
#ifndef LUMENPRESS_FRAMEWORK_NETWORK_H
#define LUMENPRESS_FRAMEWORK_NETWORK_H

namespace lumenpress::system {

class Network {
public:
  static Network &GetInstance();
  void PostponeTimedNetOff();

private:
  Network() = default;
};

}  // namespace lumenpress::system

#endif
