// The device's fulfilment service, which turns an ACSM token into the book it names.
#ifndef LUMENPRESS_DYNAMIC_LOAD_SERVICE_WRAPPER_H
#define LUMENPRESS_DYNAMIC_LOAD_SERVICE_WRAPPER_H

#include <string>

namespace lumenpress::utilities {

class DynamicLoadServiceWrapper {
public:
  static DynamicLoadServiceWrapper &Instance();

  int AddAcsmToFulfillmentQueue(const std::string &path, int flags);
  int RunAcsmFulfill();
  // Percentage 0 to 100 while working, -1 when the token's fulfilment has ended.
  int GetAcsmFileStatus(const std::string &path);

private:
  DynamicLoadServiceWrapper() = default;
};

}  // namespace lumenpress::utilities

#endif
