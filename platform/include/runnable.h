// A unit of work that one thread hands to another.
#ifndef LUMENPRESS_RUNNABLE_H
#define LUMENPRESS_RUNNABLE_H

namespace lumenpress::utilities {

class IRunnable {
public:
  virtual ~IRunnable() = default;
  virtual void Run() = 0;
};

}  // namespace lumenpress::utilities

#endif
