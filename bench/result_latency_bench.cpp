// How soon a result of the catalogue library reaches its callback on the main thread: a tiny
// feed is fetched on loopback again and again through FeedProvider, and each time is taken from
// the moment the server answered to FeedProvider's feedStatusChanged. That span holds the end of
// the transfer and the parse of a one-entry feed besides the hand-over itself, so it bounds the
// time from a queued result to its callback from above. Measured with the wake-up, then with the
// 100 ms poll alone, where each result, asked for right after a tick, waits nearly a whole period.
#include <benchmark/benchmark.h>
#include <httplib.h>
#include <stdlib.h>
#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <vector>

#include "feed_provider.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr double kGoalMs = 5;

// A store of one feed that notes when it last answered.
class TinyStore {
public:
  TinyStore() {
    server_.Get("/feed", [this](const httplib::Request &, httplib::Response &res) {
      res.set_content(
          "<feed xmlns=\"http://www.w3.org/2005/Atom\"><title>Feed</title><entry><id>1</id><title>One</title></entry>"
          "</feed>",
          "application/atom+xml");
      answered_.store(Clock::now().time_since_epoch().count());
    });
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    while (!server_.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ~TinyStore() {
    server_.stop();
    thread_.join();
  }

  std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/feed"; }
  Clock::time_point answered() const { return Clock::time_point(Clock::duration(answered_.load())); }

private:
  httplib::Server server_;
  std::atomic<Clock::rep> answered_{0};
  int port_ = 0;
  std::thread thread_;
};

struct Summary {
  const char *name;
  bool withGoal;
  std::vector<double> ms;
};
std::vector<Summary> summaries;

void ResultToCallback(benchmark::State &state, const char *name, bool wake) {
  static TinyStore store;
  FeedProvider &provider = FeedProvider::Instance();
  // The provider's wake-up cannot be put back: the poll alone is measured last.
  if (!wake) provider.dataManager().SetResultsWaitingHandler(nullptr);
  QEventLoop loop;
  Clock::time_point arrived;
  const auto connection = QObject::connect(&provider, &FeedProvider::feedStatusChanged, [&] {
    arrived = Clock::now();
    loop.quit();
  });
  const auto fetch = [&] {
    provider.dataManager().ReloadList(store.url());
    loop.exec();
  };
  fetch();
  Summary summary{name, wake, {}};
  for (auto _ : state) {
    fetch();
    const std::chrono::duration<double> took = arrived - store.answered();
    state.SetIterationTime(took.count());
    summary.ms.push_back(took.count() * 1000);
  }
  QObject::disconnect(connection);
  summaries.push_back(std::move(summary));
}

BENCHMARK_CAPTURE(ResultToCallback, WithWakeUp, "with the wake-up", true)
    ->UseManualTime()
    ->Iterations(1000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ResultToCallback, PollAlone, "100 ms poll alone", false)
    ->UseManualTime()
    ->Iterations(50)
    ->Unit(benchmark::kMillisecond);

void printSummaries() {
  for (auto &summary : summaries) {
    std::sort(summary.ms.begin(), summary.ms.end());
    const auto at = [&](double share) {
      return summary.ms[std::min(summary.ms.size() - 1, static_cast<size_t>(share * summary.ms.size()))];
    };
    std::printf("server answer to callback, %s: p50 %.3f ms, p99 %.3f ms", summary.name, at(0.5), at(0.99));
    if (summary.withGoal) std::printf(" (goal < %.0f ms: %s)", kGoalMs, at(0.99) < kGoalMs ? "met" : "NOT MET");
    std::printf("\n");
  }
}

}  // namespace

int main(int argc, char **argv) {
  char root[] = "/tmp/lp-bench-XXXXXX";
  if (!mkdtemp(root)) return 1;
  setenv("LUMENPRESS_DEVICE_ROOT", root, 1);
  setenv("LUMENPRESS_LOG_LEVEL", "1", 0);
  QCoreApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  printSummaries();
  std::filesystem::remove_all(root);
  return 0;
}
