// The device's cloud storage client, made on demand for one connection or synchronisation.
#ifndef LUMENPRESS_CLOUD_API_H
#define LUMENPRESS_CLOUD_API_H

#include <memory>

namespace lumenpress::utilities {

class ICloudApi {
public:
  virtual ~ICloudApi() = default;
  virtual int connect() = 0;
  virtual int synchronize() = 0;
};

// Null when the device has no cloud service.
std::unique_ptr<ICloudApi> createCloudApi();

}  // namespace lumenpress::utilities

#endif
