#include "message_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <climits>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "device_path.h"
#include "runnable.h"

using lumenpress::utilities::IRunnable;
using lumenpress::utilities::MessageQueue;

namespace {

size_t logLinesWith(const std::string &text) {
  std::ifstream in(lumenpress::platform::DeviceRoot() + "/host/kiosk-2.log");
  size_t count = 0;
  for (std::string line; std::getline(in, line);) count += line.find(text) != std::string::npos;
  return count;
}

// Producers mix Push and PushFront; consumers count what they took, and the one that takes the
// last item stops the others. A lost item shows as a count of 0 once the waits time out.
std::vector<int> deliveredCounts(int producers, int consumers, int items_each) {
  MessageQueue<int> queue;
  queue.Init();
  std::vector<std::atomic<int>> counts(producers * items_each);
  std::atomic<int> left{producers * items_each};
  std::vector<std::thread> threads;
  for (int c = 0; c < consumers; ++c) {
    threads.emplace_back([&] {
      for (int item = 0; queue.WaitPop(&item, 10000);) {
        ++counts.at(item);
        if (--left == 0) queue.Deinit();
      }
    });
  }
  for (int p = 0; p < producers; ++p) {
    threads.emplace_back([&queue, p, items_each] {
      for (int i = 0; i < items_each; ++i) {
        const int item = p * items_each + i;
        EXPECT_EQ(i % 3 ? queue.Push(item) : queue.PushFront(item), 0);
      }
    });
  }
  for (auto &thread : threads) thread.join();
  return std::vector<int>(counts.begin(), counts.end());
}

}  // namespace

TEST(MessageQueue, RefusesItemsUntilInitialisedAndLogsEachRefusal) {
  const std::string condition = "]Condition: \"is_inited_\", return(\"LP_NOT_IMPEMENTED\")]";
  const size_t earlier = logLinesWith(condition);
  MessageQueue<std::shared_ptr<IRunnable>> queue;
  EXPECT_EQ(queue.Push(nullptr), -7);
  EXPECT_EQ(queue.PushFront(nullptr), -7);
  EXPECT_EQ(queue.Size(), 0u);

  EXPECT_EQ(logLinesWith(condition), earlier + 2);
}

TEST(MessageQueue, PushFrontOvertakesQueuedItems) {
  MessageQueue<int> queue;
  ASSERT_EQ(queue.Init(), 0);
  for (int item : {2, 3}) queue.Push(item);
  for (int item : {1, 0}) queue.PushFront(item);
  int item = -1;
  for (int expected : {0, 1, 2, 3}) {
    ASSERT_TRUE(queue.TryPop(&item));
    EXPECT_EQ(item, expected);
  }
  EXPECT_FALSE(queue.TryPop(&item));
  EXPECT_FALSE(queue.WaitPop(&item, 1));
  EXPECT_EQ(item, 3);
}

TEST(MessageQueue, EveryItemOfManyProducersArrivesExactlyOnce) {
  for (int consumers : {1, 3}) {
    const auto counts = deliveredCounts(6, consumers, 1500);
    for (size_t i = 0; i < counts.size(); ++i) ASSERT_EQ(counts[i], 1) << "item " << i << ", consumers " << consumers;
  }
}

TEST(MessageQueue, DeinitWakesWaiterAndDropsItems) {
  MessageQueue<int> queue;
  queue.Init();
  std::thread waiter([&queue] {
    int item = 0;
    EXPECT_FALSE(queue.WaitPop(&item, INT_MAX));
  });
  // Give the waiter time to block; it returns at once if Deinit comes first.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  queue.Deinit();
  waiter.join();

  queue.Init();
  queue.Push(1);
  queue.Push(2);
  queue.Deinit();
  EXPECT_EQ(queue.Size(), 0u);
  int item = 0;
  EXPECT_FALSE(queue.WaitPop(&item, INT_MAX));
  EXPECT_EQ(queue.Push(3), -7);

  queue.Init();
  EXPECT_FALSE(queue.TryPop(&item));
  queue.Push(4);
  EXPECT_TRUE(queue.WaitPop(&item, INT_MAX));
  EXPECT_EQ(item, 4);
}
