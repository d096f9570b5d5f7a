// The catalogue library's own threads: a fixed few that take jobs in order of arrival.
#ifndef LUMENPRESS_HOST_OPDS_WORKER_POOL_H
#define LUMENPRESS_HOST_OPDS_WORKER_POOL_H

#include <functional>
#include <thread>
#include <vector>

#include "message_queue.h"

namespace lumenpress::opds {

class WorkerPool {
public:
  explicit WorkerPool(int threads);
  // Waits for the running jobs; queued ones are dropped.
  ~WorkerPool();
  WorkerPool(const WorkerPool &) = delete;
  WorkerPool &operator=(const WorkerPool &) = delete;

  void submit(std::function<void()> job);

private:
  void run();

  utilities::MessageQueue<std::function<void()>> jobs_;
  std::atomic<bool> stopping_{false};
  std::vector<std::thread> threads_;
};

}  // namespace lumenpress::opds

#endif
