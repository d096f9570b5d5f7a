#include "worker_pool.h"

namespace lumenpress::opds {

WorkerPool::WorkerPool(int threads) {
  jobs_.Init();
  for (int i = 0; i < threads; ++i) threads_.emplace_back([this] { run(); });
}

WorkerPool::~WorkerPool() {
  stopping_ = true;
  jobs_.Deinit();
  for (auto &thread : threads_) thread.join();
}

void WorkerPool::submit(std::function<void()> job) {
  jobs_.Push(std::move(job));
}

void WorkerPool::run() {
  std::function<void()> job;
  while (!stopping_) {
    if (jobs_.WaitPop(&job, 1000)) job();
  }
}

}  // namespace lumenpress::opds
