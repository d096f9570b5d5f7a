// devstore under load from a second process: four connections on loopback, a fixed number of
// requests each, for the home feed, a list page and a cover. Prints requests per second and the
// 50th and 99th percentile of the time each request took, against the goal; then, side by side,
// the same for cpp-httplib alone serving the same bodies from a process of its own, closing each
// connection after its answer as devstore does, and keeping connections alive.
#include <httplib.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "devstore_process.h"

namespace {

constexpr int kConnections = 4;
constexpr int kRequestsPerConnection = 2500;
constexpr int kWarmUpRequests = 50;
constexpr double kGoalPerSecond = 10000;
constexpr double kGoalP99Ms = 2;

using Clock = std::chrono::steady_clock;

struct Target {
  const char *name;
  std::string path;
  bool hasGoal;
};

struct Figures {
  double perSecond = 0;
  double p50Ms = 0;
  double p99Ms = 0;
  int failures = 0;
};

double percentile(std::vector<double> *sorted, double share) {
  const size_t at = std::min(sorted->size() - 1, static_cast<size_t>(share * static_cast<double>(sorted->size())));
  return (*sorted)[at];
}

// One connection's requests; the latencies in milliseconds, and how many did not answer 200.
void hammer(int port, const std::string &path, int count, std::vector<double> *latencies, int *failures) {
  httplib::Client client("127.0.0.1", port);
  client.set_keep_alive(true);
  client.set_tcp_nodelay(true);
  for (int i = 0; i < count; ++i) {
    const auto start = Clock::now();
    const auto answer = client.Get(path.c_str());
    const std::chrono::duration<double, std::milli> took = Clock::now() - start;
    if (!answer || answer->status != 200 || answer->body.empty()) ++*failures;
    latencies->push_back(took.count());
  }
}

Figures measure(int port, const std::string &path) {
  std::vector<double> warmUp;
  int ignored = 0;
  hammer(port, path, kWarmUpRequests, &warmUp, &ignored);

  std::vector<std::vector<double>> latencies(kConnections);
  std::vector<int> failures(kConnections, 0);
  std::vector<std::thread> threads;
  const auto start = Clock::now();
  for (int c = 0; c < kConnections; ++c) {
    latencies[c].reserve(kRequestsPerConnection);
    threads.emplace_back(hammer, port, path, kRequestsPerConnection, &latencies[c], &failures[c]);
  }
  for (auto &thread : threads) thread.join();
  const std::chrono::duration<double> wall = Clock::now() - start;

  std::vector<double> all;
  Figures figures;
  for (int c = 0; c < kConnections; ++c) {
    all.insert(all.end(), latencies[c].begin(), latencies[c].end());
    figures.failures += failures[c];
  }
  std::sort(all.begin(), all.end());
  figures.perSecond = static_cast<double>(all.size()) / wall.count();
  figures.p50Ms = percentile(&all, 0.50);
  figures.p99Ms = percentile(&all, 0.99);
  return figures;
}

void report(const Target &target, const Figures &figures, bool withGoal) {
  std::printf("  %-10s %8.0f requests/s   p50 %6.3f ms   p99 %6.3f ms", target.name, figures.perSecond, figures.p50Ms,
              figures.p99Ms);
  if (withGoal && target.hasGoal) {
    const bool met = figures.perSecond >= kGoalPerSecond && figures.p99Ms < kGoalP99Ms;
    std::printf("   goal >= %.0f/s, p99 < %.0f ms: %s", kGoalPerSecond, kGoalP99Ms, met ? "met" : "NOT MET");
  }
  if (figures.failures > 0) std::printf("   %d requests failed", figures.failures);
  std::printf("\n");
}

const Target kTargets[] = {{"home feed", "/de_de/lpress/opds/home", true},
                           {"list page", "/de_de/lpress/opds/list?name=popular&page=2", true},
                           {"cover", "/covers/7.jpg", false}};

void measureAll(const char *title, int port, bool withGoal) {
  std::printf("%s\n", title);
  for (const auto &target : kTargets) report(target, measure(port, target.path), withGoal);
}

// A child process that serves each target's body at its path; its port comes back through a pipe.
pid_t serveAlone(const std::vector<std::string> &bodies, bool keepAlive, int *port) {
  int out[2];
  if (pipe(out) != 0) return -1;
  const pid_t pid = fork();
  if (pid == 0) {
    httplib::Server server;
    server.set_tcp_nodelay(true);
    server.set_keep_alive_max_count(keepAlive ? kRequestsPerConnection + kWarmUpRequests : 1);
    for (size_t i = 0; i < bodies.size(); ++i) {
      const std::string path = kTargets[i].path.substr(0, kTargets[i].path.find('?'));
      server.Get(path, [body = bodies[i]](const httplib::Request &, httplib::Response &res) {
        res.set_content(body, "application/octet-stream");
      });
    }
    const int bound = server.bind_to_any_port("127.0.0.1");
    if (write(out[1], &bound, sizeof bound) != sizeof bound) _exit(1);
    server.listen_after_bind();
    _exit(0);
  }
  close(out[1]);
  if (pid < 0 || read(out[0], port, sizeof *port) != sizeof *port) *port = 0;
  close(out[0]);
  return pid;
}

void measureAlone(const std::vector<std::string> &bodies, bool keepAlive, const char *title) {
  int port = 0;
  const pid_t pid = serveAlone(bodies, keepAlive, &port);
  if (port > 0) measureAll(title, port, false);
  if (pid > 0) {
    kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
  }
}

}  // namespace

int main() {
  char folder[] = "/tmp/devstore-load-XXXXXX";
  if (!mkdtemp(folder)) return 1;
  lumenpress::testing::DevstoreProcess store(std::string(folder) + "/data");
  if (!store.running()) {
    std::fprintf(stderr, "devstore did not start\n");
    return 1;
  }
  std::printf("%d connections x %d requests per target, on loopback\n", kConnections, kRequestsPerConnection);
  measureAll("devstore", store.port(), true);
  std::vector<std::string> bodies;
  for (const auto &target : kTargets) bodies.push_back(store.get(target.path).body);
  store.stop();
  std::filesystem::remove_all(folder);
  measureAlone(bodies, false, "cpp-httplib alone, same bodies, a connection per request");
  measureAlone(bodies, true, "cpp-httplib alone, same bodies, connections kept alive");
  return 0;
}
