#include "account_test_config.h"

#include "device_path.h"
#include "panelkit.h"

namespace lumenpress::testing {

void useAccountService(const DevstoreProcess &store) {
  const std::string file = platform::DeviceRoot() + "/host/services.cfg";
  lpconfig *config = OpenConfig(file.c_str(), 1);
  WriteString(config, "account_service", store.url("/account/").c_str());
  CloseConfig(config);
}

}  // namespace lumenpress::testing
