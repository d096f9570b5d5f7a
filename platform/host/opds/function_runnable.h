// A result a worker hands to the thread that runs ProcessResults().
#ifndef LUMENPRESS_HOST_OPDS_FUNCTION_RUNNABLE_H
#define LUMENPRESS_HOST_OPDS_FUNCTION_RUNNABLE_H

#include <functional>
#include <utility>

#include "runnable.h"

namespace lumenpress::opds {

class FunctionRunnable : public utilities::IRunnable {
public:
  explicit FunctionRunnable(std::function<void()> function) : function_(std::move(function)) {}
  void Run() override { function_(); }

private:
  std::function<void()> function_;
};

}  // namespace lumenpress::opds

#endif
