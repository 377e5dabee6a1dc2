// The runs of a line that differ from the stored copy, found pixel by pixel.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "plugin/session/frame_read.h"

namespace {

struct RunsCase {
  const char* name;
  std::string line;      // one character a pixel of one byte...
  std::string previous;  // ...compared with these
  std::vector<std::pair<int32_t, int32_t>> runs;  // start and count
};

void PrintTo(const RunsCase& c, std::ostream* out) { *out << c.name; }

class ChangedRunsTest : public testing::TestWithParam<RunsCase> {};

TEST_P(ChangedRunsTest, ReportsEachDifferingRunOnce) {
  const RunsCase& c = GetParam();
  std::vector<std::pair<int32_t, int32_t>> runs;
  int32_t x = 0;
  int32_t count = 0;
  const auto* line = reinterpret_cast<const uint8_t*>(c.line.data());
  const auto* previous = reinterpret_cast<const uint8_t*>(c.previous.data());
  while (quillon::NextChangedRun(line, previous, static_cast<int32_t>(c.line.size()), 1, &x, &count)) {
    runs.emplace_back(x, count);
    x += count;
  }
  EXPECT_EQ(runs, c.runs);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ChangedRunsTest,
    testing::Values(RunsCase{"equal", "abcdef", "abcdef", {}},
                    RunsCase{"all", "abcdef", "ABCDEF", {{0, 6}}},
                    RunsCase{"middle", "abcdef", "abXYef", {{2, 2}}},
                    RunsCase{"ends", "abcdef", "XbcdeY", {{0, 1}, {5, 1}}},
                    RunsCase{"three", "abcdefgh", "XXcXeXXh", {{0, 2}, {3, 1}, {5, 2}}}),
    [](const testing::TestParamInfo<RunsCase>& info) { return info.param.name; });

// A pixel of four channels differs when any of its bytes does; its equal neighbours don't.
TEST(ChangedRuns, ComparesWholePixelsOfFourChannels) {
  const std::vector<uint8_t> line = {1, 2, 3, 4, 9, 9, 9, 9, 5, 6, 7, 8};
  const std::vector<uint8_t> previous = {1, 2, 3, 4, 9, 9, 9, 0, 5, 6, 7, 8};
  int32_t x = 0;
  int32_t count = 0;
  ASSERT_TRUE(quillon::NextChangedRun(line.data(), previous.data(), 3, 4, &x, &count));
  EXPECT_EQ(x, 1);
  EXPECT_EQ(count, 1);
  x += count;
  EXPECT_FALSE(quillon::NextChangedRun(line.data(), previous.data(), 3, 4, &x, &count));
}

}  // namespace
