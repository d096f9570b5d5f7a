// A queue between threads: producers push from anywhere, a consumer takes items in order.
#ifndef LUMENPRESS_MESSAGE_QUEUE_H
#define LUMENPRESS_MESSAGE_QUEUE_H

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

#include "lp_log.h"
#include "pushable.h"

namespace lumenpress::utilities {

template <typename T>
class MessageQueue : public IPushable<T> {
public:
  int Init() {
    is_inited_ = true;
    return 0;
  }

  // Drops what is queued and wakes every waiting consumer.
  void Deinit() {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      is_inited_ = false;
      queue_.clear();
    }
    condition_.notify_all();
  }

  // The state is tested under the lock, so nothing slips in behind a concurrent Deinit.
  int Push(const T &item) override {
    std::lock_guard<std::mutex> lock(mutex_);
    LP_CHECK_RET(is_inited_, LP_NOT_IMPEMENTED);
    queue_.push_back(item);
    condition_.notify_one();
    return 0;
  }

  int PushFront(const T &item) override {
    std::lock_guard<std::mutex> lock(mutex_);
    LP_CHECK_RET(is_inited_, LP_NOT_IMPEMENTED);
    queue_.push_front(item);
    condition_.notify_one();
    return 0;
  }

  bool TryPop(T *out) {
    std::lock_guard<std::mutex> lock(mutex_);
    return popLocked(out);
  }

  // False on time-out, or when the queue is taken down while waiting.
  bool WaitPop(T *out, int timeout_ms) {
    std::unique_lock<std::mutex> lock(mutex_);
    condition_.wait_for(lock, std::chrono::milliseconds(timeout_ms), [this] { return !queue_.empty() || !is_inited_; });
    return popLocked(out);
  }

  size_t Size() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return queue_.size();
  }

private:
  bool popLocked(T *out) {
    if (queue_.empty()) return false;
    *out = std::move(queue_.front());
    queue_.pop_front();
    return true;
  }

  std::atomic<bool> is_inited_{false};
  mutable std::mutex mutex_;
  std::condition_variable condition_;
  std::deque<T> queue_;
};

}  // namespace lumenpress::utilities

#endif
