// The device a fuzz target runs on: a root of its own, and a log that stays silent unless LUMENPRESS_LOG_LEVEL
// asks for it, since every run would add its lines.
#ifndef LUMENPRESS_TESTS_FUZZ_DEVICE_H
#define LUMENPRESS_TESTS_FUZZ_DEVICE_H

namespace lumenpress::testing {

class FuzzDevice {
public:
  // Once, from LLVMFuzzerInitialize; the root goes when the process ends.
  static void Prepare();
};

}  // namespace lumenpress::testing

#endif
