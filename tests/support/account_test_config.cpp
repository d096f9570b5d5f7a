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

void useLegalService(const DevstoreProcess &store) {
  std::string origin = store.url("/");
  origin.pop_back();
  lpconfig *config = OpenConfig((platform::DeviceRoot() + "/host/services.cfg").c_str(), 1);
  WriteString(config, "legal_service", origin.c_str());
  CloseConfig(config);
}

}  // namespace lumenpress::testing
