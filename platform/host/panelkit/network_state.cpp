#include "network_state.h"

#include <unistd.h>

#include "device_tree.h"
#include "panelkit.h"
#include "task_journal.h"

namespace lumenpress::platform {

bool NetworkState::isUp() {
  return ::access(DeviceTree::instance().hostPath("network_down").c_str(), F_OK) != 0;
}

}  // namespace lumenpress::platform

using lumenpress::platform::NetworkState;
using lumenpress::platform::TaskJournal;

namespace {

int connect(const char *call, const char *name) {
  const bool up = NetworkState::isUp();
  Json::Value members;
  members["name"] = TaskJournal::text(name);
  members["result"] = up ? 0 : -1;
  TaskJournal::append(call, members);
  return up ? 0 : -1;
}

}  // namespace

extern "C" int QueryNetwork(void) {
  return NetworkState::isUp() ? NetworkState::kConnectedBits : 0;
}

extern "C" int NetConnect(const char *name) {
  return connect("NetConnect", name);
}

extern "C" int NetConnectSilent(const char *name) {
  return connect("NetConnectSilent", name);
}
