// Something that accepts items from any thread.
#ifndef LUMENPRESS_PUSHABLE_H
#define LUMENPRESS_PUSHABLE_H

namespace lumenpress::utilities {

template <typename T>
class IPushable {
public:
  virtual ~IPushable() = default;
  virtual int Push(const T &item) = 0;
  virtual int PushFront(const T &item) = 0;
};

}  // namespace lumenpress::utilities

#endif
