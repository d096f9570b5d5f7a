#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "device_path.h"
#include "lp_log.h"

namespace {

std::vector<std::string> logLines() {
  std::ifstream in(lumenpress::platform::DeviceRoot() + "/host/kiosk-2.log");
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

int checkedDivide(int a, int b, int *out) {
  LP_CHECK_RET(b != 0, LP_NOT_IMPEMENTED);
  *out = a / b;
  return 0;
}

}  // namespace

TEST(LogSink, LinesCarryLevelPlaceAndPidAndObeyTheThreshold) {
  LP_LOG(LP_LOG_INFO, "Starting %s", "kiosk-2");
  const int line = __LINE__ - 1;
  int out = 0;
  EXPECT_EQ(checkedDivide(6, 3, &out), 0);
  EXPECT_EQ(out, 2);
  EXPECT_EQ(checkedDivide(1, 0, &out), -7);
  setenv("LUMENPRESS_LOG_LEVEL", "2", 1);
  LP_LOG(LP_LOG_INFO, "hidden");
  LP_LOG(LP_LOG_WARNING, "shown");
  unsetenv("LUMENPRESS_LOG_LEVEL");

  const auto lines = logLines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_NE(lines[0].find("<3>"), std::string::npos);
  EXPECT_NE(lines[0].find("log_sink_test.cpp:" + std::to_string(line)), std::string::npos);
  EXPECT_NE(lines[0].find("virtual void LogSink_LinesCarryLevelPlaceAndPidAndObeyTheThreshold_Test::TestBody()"),
            std::string::npos);
  EXPECT_NE(lines[0].find("[pid:" + std::to_string(getpid()) + "]Starting kiosk-2"), std::string::npos);
  EXPECT_NE(lines[1].find("<1>"), std::string::npos);
  EXPECT_NE(lines[1].find("]Condition: \"b != 0\", return(\"LP_NOT_IMPEMENTED\")]"), std::string::npos);
  EXPECT_NE(lines[2].find("shown"), std::string::npos);
}

TEST(LogSink, LinesFromEightThreadsStayWhole) {
  constexpr int kThreads = 8;
  constexpr int kLines = 400;
  // Long payloads make a torn write likely if lines were written piecewise.
  const std::string payload(300, 'x');
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &payload] {
      for (int i = 0; i < kLines; ++i) LP_LOG(LP_LOG_INFO, "thread=%d line=%d %s end", t, i, payload.c_str());
    });
  }
  for (auto &thread : threads) thread.join();

  const std::regex whole(R"(^.* <3> .*\[pid:\d+\]thread=(\d) line=(\d+) x{300} end$)");
  std::vector<std::vector<bool>> seen(kThreads, std::vector<bool>(kLines, false));
  const auto lines = logLines();
  ASSERT_EQ(lines.size(), static_cast<size_t>(kThreads * kLines));
  for (const auto &line : lines) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(line, match, whole)) << line;
    seen[std::stoi(match[1])][std::stoi(match[2])] = true;
  }
  for (const auto &thread : seen)
    for (bool line : thread) EXPECT_TRUE(line);
}
