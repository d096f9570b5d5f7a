#include "device_identity.h"

#include "lp_log.h"
#include "panelkit.h"

namespace lumenpress::platform {

namespace {

const char kCoreDeviceConfig[] = "/coreapp/config/device.cfg";
const char kSecureDeviceConfig[] = "/mnt/secure/device.cfg";

lpconfig *openDeviceConfig(const char *path) {
  lpconfig *cfg = OpenConfig(path, 0);
  if (!cfg) LP_LOG(LP_LOG_WARNING, "cannot read %s: device identity left empty", path);
  return cfg;
}

std::string readText(lpconfig *cfg, const char *key) {
  return ReadString(cfg, key, "");
}

}  // namespace

const DeviceIdentity &DeviceIdentity::instance() {
  static const DeviceIdentity *identity = new DeviceIdentity();
  return *identity;
}

DeviceIdentity::DeviceIdentity() {
  lpconfig *core = openDeviceConfig(kCoreDeviceConfig);
  model_ = readText(core, "model");
  software_version_ = readText(core, "software_version");
  customized_partner_ = ReadInt(core, "customized_partner", 0);
  CloseConfigNoSave(core);

  lpconfig *secure = openDeviceConfig(kSecureDeviceConfig);
  serial_number_ = readText(secure, "serial");
  CloseConfigNoSave(secure);
}

}  // namespace lumenpress::platform

using lumenpress::platform::DeviceIdentity;

extern "C" const char *GetDeviceModel(void) {
  return DeviceIdentity::instance().model().c_str();
}

extern "C" const char *GetSerialNumber(void) {
  return DeviceIdentity::instance().serialNumber().c_str();
}

extern "C" const char *GetSoftwareVersion(void) {
  return DeviceIdentity::instance().softwareVersion().c_str();
}

extern "C" int GetCustomizedPartner(void) {
  return DeviceIdentity::instance().customizedPartner();
}
