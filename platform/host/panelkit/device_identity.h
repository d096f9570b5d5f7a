// Who this device is: model, serial number, software version and partner, as the
// device's configuration files tell them when the process first asks.
#ifndef LUMENPRESS_HOST_DEVICE_IDENTITY_H
#define LUMENPRESS_HOST_DEVICE_IDENTITY_H

#include <string>

namespace lumenpress::platform {

class DeviceIdentity {
public:
  // Never destroyed, so its texts outlive every caller, static destructors included.
  static const DeviceIdentity &instance();

  const std::string &model() const { return model_; }
  const std::string &serialNumber() const { return serial_number_; }
  const std::string &softwareVersion() const { return software_version_; }
  int customizedPartner() const { return customized_partner_; }

private:
  DeviceIdentity();

  std::string model_;
  std::string serial_number_;
  std::string software_version_;
  int customized_partner_ = 0;
};

}  // namespace lumenpress::platform

#endif
