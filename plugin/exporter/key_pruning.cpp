#include "plugin/exporter/key_pruning.h"

#include <cmath>

namespace {
// 1e-6 rounded to single precision, the tolerance the baked values are compared with.
constexpr double kFloatKeyTolerance = 9.999999974752427e-7;
}  // namespace

std::vector<int32_t> RedundantKeys(int32_t keyCount, const std::function<bool(int32_t, int32_t)>& same) {
  std::vector<int32_t> redundant;
  for (int32_t i = 1; i + 1 < keyCount; ++i) {
    if (same(i - 1, i) && same(i + 1, i)) redundant.push_back(i);
  }
  return redundant;
}

bool FloatKeysMatch(double a, double b) { return std::fabs(a - b) < kFloatKeyTolerance; }

bool TrackIsStatic(int32_t keysLeft, bool twoKeysExactlyEqual) {
  return keysLeft < 2 || (keysLeft == 2 && twoKeysExactlyEqual);
}
